#include "qt/dressing/Mnemonics.h"

#include <QAbstractButton>
#include <QEvent>
#include <QKeyEvent>
#include <QPushButton>
#include <algorithm>

namespace installer {

namespace {

/// Letters that a keyboard has a key of their own for. Those of other scripts are typed by way of
/// several keys.
bool hasKey(QChar letter) {
    switch (letter.script()) {
        case QChar::Script_Latin:
        case QChar::Script_Greek:
        case QChar::Script_Cyrillic:
        case QChar::Script_Hebrew:
        case QChar::Script_Arabic:
            return letter.isLetter();
        default:
            return letter.isDigit();
    }
}

bool isFree(QChar letter, const QString& taken) {
    return hasKey(letter) && !taken.contains(letter.toLower());
}

/// The first free letter of a word, else of the label; -1 when there is none. A doubled "&" in a
/// label stands for the sign itself.
qsizetype freeLetter(const QString& label, const QString& taken) {
    for (qsizetype i = 0; i < label.size(); ++i) {
        const bool startsWord = i == 0 || label[i - 1].isSpace();
        if (startsWord && isFree(label[i], taken)) return i;
    }
    for (qsizetype i = 0; i < label.size(); ++i) {
        if (isFree(label[i], taken)) return i;
    }
    return -1;
}

/// The buttons of every page come first, so that theirs stay the same from page to page.
bool isOnEveryPage(const QAbstractButton& button) {
    const auto* push = qobject_cast<const QPushButton*>(&button);
    return push != nullptr && push->parentWidget() != nullptr &&
           std::any_of(push->parentWidget()->children().begin(),
                       push->parentWidget()->children().end(), [](const QObject* child) {
                           const auto* other = qobject_cast<const QPushButton*>(child);
                           return other != nullptr && other->isDefault();
                       });
}

}  // namespace

QString withMnemonic(const QString& label, QString& taken) {
    QString marked = label;
    if (const qsizetype place = freeLetter(label, taken); place >= 0) {
        taken += label[place].toLower();
        return marked.insert(place, u'&');
    }
    for (char16_t letter = u'A'; letter <= u'Z'; ++letter) {
        if (!isFree(letter, taken)) continue;
        taken += QChar(letter).toLower();
        return marked + QLatin1String("(&") + QChar(letter) + u')';
    }
    return marked;
}

Mnemonics::Mnemonics(QWidget& window) : QObject(&window), window_(window) {
    window.installEventFilter(this);
    for (auto* child : window.findChildren<QWidget*>()) child->installEventFilter(this);
}

bool Mnemonics::eventFilter(QObject* watched, QEvent* event) {
    const auto isAlt = [event] {
        return static_cast<const QKeyEvent&>(*event).key() == Qt::Key_Alt;
    };
    switch (event->type()) {
        case QEvent::KeyPress:
            if (isAlt() && marked_.empty()) mark();
            break;
        case QEvent::KeyRelease:
            if (isAlt()) unmark();
            break;
        case QEvent::WindowDeactivate:
            if (watched == &window_) unmark();
            break;
        default:
            break;
    }
    return false;
}

void Mnemonics::mark() {
    std::vector<QAbstractButton*> buttons;
    for (auto* button : window_.findChildren<QAbstractButton*>()) {
        if (button->isVisible() && button->isEnabled() && !button->text().isEmpty()) {
            buttons.push_back(button);
        }
    }
    std::stable_partition(buttons.begin(), buttons.end(),
                          [](const auto* button) { return isOnEveryPage(*button); });
    QString taken;
    for (QAbstractButton* button : buttons) {
        Marked entry{button, button->text(), withMnemonic(button->text(), taken),
                     button->accessibleName()};
        if (entry.accessibleName.isEmpty()) {
            QString name = entry.text;
            button->setAccessibleName(name.replace(QLatin1String("&&"), QLatin1String("&")));
        }
        button->setText(entry.marked);
        marked_.push_back(std::move(entry));
    }
}

void Mnemonics::unmark() {
    for (const Marked& entry : marked_) {
        if (!entry.button) continue;
        // The press may have given the button another text.
        if (entry.button->text() == entry.marked) entry.button->setText(entry.text);
        entry.button->setAccessibleName(entry.accessibleName);
    }
    marked_.clear();
}

}  // namespace installer
