#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace installer {

/// One line on standard error and in the system's log. It is made one
/// harmless line (`visibleText`): a file name cannot forge a line. A very long line is cut. Never
/// waits for a reader: a line that cannot be written at once is dropped.
void report(std::string_view line);

/// Writes below which folders this process may change anything, to the system's log alone.
void noteFolders(const std::vector<std::string>& folders);

}  // namespace installer
