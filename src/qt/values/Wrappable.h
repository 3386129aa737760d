#pragma once

#include <QString>

namespace installer {

/// The text with invisible break points: after each "/", and inside words that are too long for a
/// line. Labels wrap only at such points and at blanks, and a path has neither.
[[nodiscard]] QString wrappable(const QString& text);

}  // namespace installer
