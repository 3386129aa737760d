#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <source_location>
#include <string>
#include <string_view>
#include <vector>

namespace installer::fuzz {

/// Ends the process when a rule is broken, which a fuzzer and the replay of a corpus both notice.
inline void require(bool holds,
                    const std::source_location& place = std::source_location::current()) {
    if (holds) return;
    std::fprintf(stderr, "%s:%u: a rule is broken\n", place.file_name(),
                 static_cast<unsigned>(place.line()));
    std::abort();
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// The byte between the parts of an input that consists of several. It occurs in no UTF-8 text.
inline constexpr char separator = '\xFF';

/// The first `count` parts of the input, empty ones for those that it lacks. The last one holds
/// all that is left.
inline std::vector<std::string> parts(std::string_view input, std::size_t count) {
    std::vector<std::string> found;
    while (found.size() + 1 < count) {
        const std::size_t end = input.find(separator);
        found.emplace_back(input.substr(0, end));
        input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
    }
    found.emplace_back(input);
    return found;
}

/// For what neither may be shown nor begin a new line.
inline bool hasControl(std::string_view text) {
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) return true;
    }
    return false;
}

}  // namespace installer::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
