#pragma once

#include <QObject>
#include <QString>
#include <string>

#include "qt/values/QtText.h"

namespace installer {

/// A text for a control. Each "&" is doubled, because the control would read it as the mark of a
/// mnemonic.
[[nodiscard]] inline QString withoutMnemonics(const std::string& text) {
    return toQt(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

/// A text for a tool tip. It is escaped, because a tool tip shows what looks like HTML as HTML.
[[nodiscard]] inline QString plainToolTip(const std::string& text) {
    if (text.empty()) return {};
    return QLatin1String("<span>") + toQt(text).toHtmlEscaped() + QLatin1String("</span>");
}

/// Shows the text as the control's label, title or contents. False if the control shows no text.
[[nodiscard]] bool setControlText(QObject& control, const std::string& text);

}  // namespace installer
