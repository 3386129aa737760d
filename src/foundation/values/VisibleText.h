#pragma once

#include <string>
#include <string_view>

namespace installer {

/// The text as one harmless line: control characters, line and paragraph separators, marks that
/// turn the writing direction, and bytes that are not UTF-8 are written as "\n", "\t" or "\x1b".
/// All else stays as it is; a backslash too, so that ordinary texts read as they were written.
[[nodiscard]] std::string visibleText(std::string_view text);

}  // namespace installer
