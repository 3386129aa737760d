#pragma once

#include <string>
#include <string_view>

namespace installer::test {

/// A test row's name made of its input: letters and digits stay, blanks become underscores, every
/// other byte its hexadecimal code.
inline std::string rowName(std::string_view input) {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string name;
    for (const char byte : input) {
        const auto code = static_cast<unsigned char>(byte);
        const bool plain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= 'a' && byte <= 'z');
        if (plain) {
            name += byte;
        } else if (byte == ' ') {
            name += '_';
        } else {
            name += {'x', digits[code / 16U], digits[code % 16U]};
        }
    }
    return name.empty() ? "empty" : name;
}

}  // namespace installer::test
