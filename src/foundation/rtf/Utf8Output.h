#pragma once

#include <string>

namespace installer::rtf {

/// Adds the character, which must not be half of a surrogate pair, to the text.
void appendUtf8(char32_t character, std::string& text);

}  // namespace installer::rtf
