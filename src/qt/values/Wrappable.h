#pragma once

#include <QString>

namespace installer {

/// The text with invisible places at which a line may end: after each "/" and within words that
/// are too long for a line. Labels wrap at such places and at blanks only, and a path has neither.
[[nodiscard]] QString wrappable(const QString& text);

}  // namespace installer
