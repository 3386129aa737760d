#pragma once

#include <string_view>

namespace installer {

/// One line on standard error and in the system's log. It is made one
/// harmless line (`visibleText`): a file name cannot forge a line. A very long line is cut. Never
/// waits for a reader: a line that cannot be written at once is dropped.
void report(std::string_view line);

/// A line that nobody has to act on, in the system's log alone.
void note(std::string_view line);

}  // namespace installer
