#pragma once

#include <QString>

namespace installer {

/// The text with every character that would turn the letters after it around, or that ends such a
/// stretch, replaced by its number: a name can then not be read as another one. For names that
/// somebody else has chosen, such as those of folders.
[[nodiscard]] QString withVisibleOverrides(const QString& text);

}  // namespace installer
