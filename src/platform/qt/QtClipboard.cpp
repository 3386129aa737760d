#include "platform/qt/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include "platform/qt/QtText.h"

namespace installer {

void QtClipboard::setText(const std::string& text) {
    QGuiApplication::clipboard()->setText(toQt(text));
}

}  // namespace installer
