#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QScrollBar>
#include <QTextBrowser>
#include <QTextDocument>
#include <optional>

#include "qt/binding/Binding.h"
#include "qt/binding/ControlText.h"
#include "qt/values/QtText.h"
#include "qt/values/StyledTextDocument.h"
#include "qt/values/Wrappable.h"

namespace installer {

namespace {

void showStyled(QLabel& label, const StyledText& text) {
    QTextDocument document;
    setStyledText(document, text, TextLook::of(label));
    label.setTextFormat(Qt::RichText);
    label.setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    label.setText(document.toHtml());
}

void showPlain(QLabel& label, const QString& text) {
    label.setTextFormat(Qt::PlainText);
    label.setTextInteractionFlags(Qt::NoTextInteraction);
    label.setText(text);
}

/// A visible label keeps its height while it shows texts, so that the controls below do not move.
void keepHeight(QLabel& label, const QString& nextText) {
    if (nextText.isEmpty()) {
        label.setMinimumHeight(0);
    } else if (label.isVisible()) {
        label.setMinimumHeight(label.height());
    }
}

/// A text in a browser. If the same text is shown again, also in other colours, the scroll position
/// stays.
class BrowserText {
  public:
    explicit BrowserText(QTextBrowser& browser) : browser_(browser) {
        const bool hasFrame = browser.frameShape() != QFrame::NoFrame;
        browser.document()->setDocumentMargin(hasFrame ? marginInFrame : 0);
    }

    void show(const StyledText& text) {
        TextLook look = TextLook::of(browser_);
        look.lineHeight = comfortableLineHeight;
        // A text that is set again has many messages to screen readers, which then miss others.
        if (text == shown_ && look == look_) return;
        const int place = text == shown_ ? browser_.verticalScrollBar()->value() : 0;
        setStyledText(*browser_.document(), text, look);
        browser_.moveCursor(QTextCursor::Start);
        browser_.verticalScrollBar()->setValue(place);
        shown_ = text;
        look_ = look;
    }

  private:
    static constexpr int marginInFrame = 16;
    static constexpr int comfortableLineHeight = 125;

    QTextBrowser& browser_;
    StyledText shown_;
    std::optional<TextLook> look_;
};

ShowValue labelText(QLabel& label, const BindingContext& context) {
    QObject::connect(&label, &QLabel::linkActivated, &context.lifetime,
                     [open = context.openLink](const QString& link) { open(fromQt(link)); });
    return [&label](const PropertyValue& value) {
        if (const auto* styled = std::get_if<StyledText>(&value)) {
            showStyled(label, *styled);
        } else {
            showPlain(label, toQt(plainTextOf(value)));
        }
    };
}

/// Never follows a link itself, because the browser would replace the text by the link's target.
void passLinksOn(QTextBrowser& browser, const BindingContext& context) {
    browser.setOpenLinks(false);
    QObject::connect(&browser, &QTextBrowser::anchorClicked, &context.lifetime,
                     [open = context.openLink](const QUrl& link) {
                         open(fromQt(link.toString(QUrl::FullyEncoded)));
                     });
}

ShowValue browserText(QTextBrowser& browser, const BindingContext& context) {
    passLinksOn(browser, context);
    return [text = BrowserText(browser)](const PropertyValue& value) mutable {
        const auto* styled = std::get_if<StyledText>(&value);
        text.show(styled ? *styled : StyledText::fromPlainText(plainTextOf(value)));
    };
}

}  // namespace

bool setControlText(QObject& control, const std::string& text) {
    if (auto* label = qobject_cast<QLabel*>(&control)) {
        showPlain(*label, toQt(text));
    } else if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
        button->setText(withoutMnemonics(text));
    } else if (auto* edit = qobject_cast<QLineEdit*>(&control)) {
        edit->setText(toQt(text));
        edit->setCursorPosition(0);
        edit->setToolTip(plainToolTip(text));
    } else if (auto* menu = qobject_cast<QMenu*>(&control)) {
        menu->setTitle(withoutMnemonics(text));
    } else if (auto* action = qobject_cast<QAction*>(&control)) {
        action->setText(withoutMnemonics(text));
    } else if (auto* window = qobject_cast<QMainWindow*>(&control)) {
        window->setWindowTitle(toQt(text));
    } else {
        return false;
    }
    return true;
}

std::string plainTextOf(const PropertyValue& value) {
    if (const auto* plain = std::get_if<std::string>(&value)) return *plain;
    if (const auto* styled = std::get_if<StyledText>(&value)) return styled->plainText();
    return {};
}

ShowValue textBinding(QObject& control, const BindingContext& context) {
    if (auto* label = qobject_cast<QLabel*>(&control)) return labelText(*label, context);
    if (auto* browser = qobject_cast<QTextBrowser*>(&control)) {
        return browserText(*browser, context);
    }
    if (!setControlText(control, {})) return {};
    return [&control](const PropertyValue& value) {
        static_cast<void>(setControlText(control, plainTextOf(value)));
    };
}

ShowValue plainTextBinding(QObject& control, const BindingContext& /*context*/) {
    auto* label = qobject_cast<QLabel*>(&control);
    if (!label) return {};
    return [label](const PropertyValue& value) {
        const auto* plain = std::get_if<std::string>(&value);
        const QString text = plain ? toQt(*plain) : QString();
        keepHeight(*label, text);
        showPlain(*label, wrappable(text));
        label->setAccessibleName(text);
        label->setVisible(!text.isEmpty());
    };
}

ShowValue styledTextBinding(QObject& control, const BindingContext& context) {
    auto* browser = qobject_cast<QTextBrowser*>(&control);
    if (!browser) return {};
    passLinksOn(*browser, context);
    return [text = BrowserText(*browser)](const PropertyValue& value) mutable {
        const auto* styled = std::get_if<StyledText>(&value);
        text.show(styled ? *styled : StyledText{});
    };
}

}  // namespace installer
