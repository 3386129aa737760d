#pragma once

#include <string_view>

namespace installer {

/// Whether a property list may be handed to the reader of property lists. That reader follows
/// nested values by recursion and writes out a value anew each time a binary list refers to it: a
/// file of a few kilobytes could exhaust the stack or the memory. Says nothing about whether the
/// list is well formed otherwise.
[[nodiscard]] bool hasHarmlessShape(std::string_view propertyList);

}  // namespace installer
