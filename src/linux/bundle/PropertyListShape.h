#pragma once

#include <string_view>

namespace installer {

/// Whether a property list may be handed to the reader of property lists. That reader follows
/// nested values by recursion, writes out a value anew each time a binary list refers to it, and
/// takes quadratic time for a dictionary's keys and a text's entities: a file of a few kilobytes
/// could exhaust the stack or the memory, a larger one hold the program up for hours. Refused is
/// also what would not survive being written again: a NUL in XML, a text that is not UTF-8 in a
/// binary list. Says nothing about whether the list is well formed otherwise.
[[nodiscard]] bool hasHarmlessShape(std::string_view propertyList);

}  // namespace installer
