#include "qt/dialogs/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include "qt/values/QtText.h"

namespace installer {

void QtClipboard::setText(const std::string& text) {
    QGuiApplication::clipboard()->setText(toQt(text));
}

}  // namespace installer
