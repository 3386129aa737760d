#include "qt/dialogs/QtAlerts.h"

#include <QApplication>
#include <QFont>
#include <QFontMetrics>
#include <QIcon>
#include <QLabel>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QStyle>
#include <algorithm>
#include <string>
#include <vector>

#include "foundation/text/Format.h"
#include "ports/Bundle.h"
#include "qt/dialogs/WindowOnTop.h"
#include "qt/values/QtText.h"
#include "qt/values/Wrappable.h"

namespace installer {

namespace {

/// A line that a person likes to read; shorter lines are as long as they are.
int lineWidth(const QLabel& label, const QString& text) {
    constexpr int letters = 60;
    const QFontMetrics metrics = label.fontMetrics();
    const int whole = metrics.boundingRect(QRect(), Qt::AlignLeft, text).width();
    return std::min(whole + 1, letters * metrics.averageCharWidth());
}

/// The label of the box that shows the text; it has its own idea of what markup is.
void showAsItIs(const QMessageBox& box, const QString& text, QFont::Weight weight) {
    for (QLabel* label : box.findChildren<QLabel*>()) {
        if (text.isEmpty() || label->text() != text) continue;
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setText(wrappable(text));
        label->setAccessibleName(text);
        QFont font = label->font();
        font.setWeight(weight);
        label->setFont(font);
        label->setMinimumWidth(lineWidth(*label, text));
    }
}

/// The text with the message's number and the place of its item, as far as they are known.
QString numbered(const std::string& text, const Alert& alert, const Bundle& bundle) {
    if (alert.number == 0) return toQt(text);
    const std::string number = std::to_string(alert.number);
    const auto withItem = bundle.localizedString("alert_item_fmt", "Localizable");
    if (alert.item > 0 && withItem) {
        return toQt(formatted(
            *withItem, {text, number, std::to_string(alert.item), std::to_string(alert.items)}));
    }
    const auto format = bundle.localizedString("alert_number_fmt", "Localizable");
    return toQt(format ? formatted(*format, {text, number}) : text);
}

/// The installer as people know it; the bundle's own name may be another.
std::string installerTitle(const Bundle& bundle) {
    const auto format = bundle.localizedString("main_wnd_title_fmt", "Localizable");
    const auto product = bundle.localizedString("product_name", "installer");
    if (!format || !product) return fromQt(QApplication::applicationName());
    return formatted(*format, {*product});
}

void setTexts(QMessageBox& box, const Alert& alert, const Bundle& bundle) {
    const QString title = toQt(alert.title);
    const QString message = toQt(alert.message);
    box.setObjectName(toQt(alert.identifier));
    box.setAccessibleName(
        numbered(alert.title.empty() ? alert.message : alert.title, alert, bundle));
    box.setWindowTitle(numbered(installerTitle(bundle), alert, bundle));
    box.setTextFormat(Qt::PlainText);
    box.setText(title);
    box.setInformativeText(message);
    showAsItIs(box, title, QFont::Bold);
    showAsItIs(box, message, QFont::Normal);
}

/// The picture says nothing that the title does not, but an image has to have a name.
void namePicture(const QMessageBox& box) {
    for (QLabel* label : box.findChildren<QLabel*>()) {
        if (!label->pixmap(Qt::ReturnByValue).isNull()) {
            label->setAccessibleName(box.accessibleName());
        }
    }
}

void setPicture(QMessageBox& box, Alert::Style style, const Bundle& bundle) {
    const bool warns = style == Alert::Style::warning;
    box.setIcon(warns ? QMessageBox::Warning : QMessageBox::Information);
    const auto path = bundle.resourcePath(warns ? "Installer_Error" : "AppIcon", "png");
    if (!path) return;
    const int side = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
    const QPixmap picture = QIcon(toQt(*path)).pixmap({side, side}, box.devicePixelRatioF());
    if (!picture.isNull()) box.setIconPixmap(picture);
}

/// A button would take a "&" for the mark of its shortcut key.
QString buttonText(const std::string& title) {
    return toQt(title).replace(u'&', QLatin1String("&&"));
}

std::vector<QPushButton*> addButtons(QMessageBox& box, const std::vector<std::string>& titles) {
    std::vector<QPushButton*> buttons;
    buttons.reserve(titles.size());
    for (const std::string& title : titles) {
        // Desktops arrange buttons by their roles; those of one role keep the order given.
        buttons.push_back(box.addButton(buttonText(title), QMessageBox::ActionRole));
    }
    if (!buttons.empty()) {
        box.setDefaultButton(buttons.front());
        box.setEscapeButton(buttons.back());
    }
    return buttons;
}

}  // namespace

std::size_t QtAlerts::runModal(const Alert& alert) {
    QMessageBox box(windowOnTop());
    setTexts(box, alert, bundle_);
    setPicture(box, alert.style, bundle_);
    namePicture(box);
    const std::vector<QPushButton*> buttons = addButtons(box, alert.buttons);
    box.exec();
    if (buttons.empty()) return 0;
    const auto pressed = std::find(buttons.begin(), buttons.end(), box.clickedButton());
    return pressed == buttons.end() ? buttons.size() - 1
                                    : static_cast<std::size_t>(pressed - buttons.begin());
}

}  // namespace installer
