#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace installer {

/// The texts of one string table, and what was wrong with its file.
///
/// A table is a list of `"key" = "value";` with C and C++ comments. Keys and values of letters,
/// digits and `_ $ . - : /` need no quotes. Escapes are those of C strings, `\` before an octal
/// number, and `\U` or `\u` before four hexadecimal digits (surrogate pairs make one character).
/// Files are UTF-8, or UTF-16 with a byte order mark.
struct StringsTable {
    enum class Mistake {
        damagedBytes,
        commentWithoutEnd,
        textWithoutClosingQuote,
        incompletePair,
        missingSemicolon,
        escapeWithoutCharacter,
        unknownEscape,
        repeatedKey,
    };
    struct Problem {
        std::size_t line = 0;  ///< the first line is 1
        std::string message;
        Mistake mistake = Mistake::incompletePair;
    };

    std::map<std::string, std::string> entries;  ///< UTF-8; of a key that occurs twice, the last
    std::vector<Problem> problems;               ///< in line order, at most `maximumProblems`
    /// What is read as it was meant most likely, and so is no problem: escapes that are unknown,
    /// keys that occur again. In the order of reading, at most `maximumProblems`.
    std::vector<Problem> remarks;
    std::map<std::string, std::size_t> lines;  ///< where each key of `entries` stands

    static constexpr std::size_t maximumProblems = 20;
};

/// Reads a table. Whatever the bytes are, it reads to their end: after a syntax error it goes on
/// with the next pair, at the latest on the next line. What is no character (bytes that are not
/// UTF-8, a NUL) becomes U+FFFD, so that no text is cut short by it.
[[nodiscard]] StringsTable parseStringsTable(std::string_view bytes);

}  // namespace installer
