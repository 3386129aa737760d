#include "qt/values/VisibleText.h"

namespace installer {

namespace {

bool turnsTextAround(QChar character) {
    const char16_t code = character.unicode();
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

}  // namespace

QString withVisibleOverrides(const QString& text) {
    QString result;
    for (const QChar character : text) {
        if (turnsTextAround(character)) {
            result += QStringLiteral("‹U+%1›").arg(int(character.unicode()), 4, 16).toUpper();
        } else {
            result += character;
        }
    }
    return result;
}

}  // namespace installer
