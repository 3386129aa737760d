#pragma once

#include <optional>
#include <string_view>
#include <variant>

namespace installer::rtf {

/// Where the text of a group goes.
enum class Destination {
    text,
    skipped,
    fontTable,
    colorTable,
    fieldInstruction,
    alternatives,  ///< the same text twice: first for readers without Unicode, then for others
};

enum class CharacterProperty {
    plain,
    font,
    size,
    color,
    bold,
    italic,
    underline,
    noUnderline,
    strikethrough,
    hidden,
};

enum class ParagraphProperty {
    defaults,
    alignedLeft,
    alignedRight,
    centered,
    justified,
    alignedNaturally,
    leftToRight,
    rightToLeft,
    leftIndent,
    rightIndent,
    firstLineIndent,
    spaceBefore,
    spaceAfter,
};

enum class Command {
    endParagraph,
    endPage,  ///< ends a paragraph only if one has begun
    unicode,
    fallbackLength,
    field,
    fieldResult,
    unicodeAlternative,
    ansi,
    mac,
    pc,
    pca,
    codePage,
    defaultFont,
    fontCharset,
    fontCodePage,
    red,
    green,
    blue,
};

/// What a control word means. For a word that stands for a character it is the code point.
using Meaning = std::variant<char32_t, Destination, CharacterProperty, ParagraphProperty, Command>;

constexpr char32_t lineSeparator = 0x2028;
constexpr char32_t paragraphSeparator = 0x2029;

/// What the word means; nullopt if this reader ignores the word.
[[nodiscard]] std::optional<Meaning> meaningOf(std::string_view controlWord);

/// The character that a backslash with this symbol stands for; nullopt if it does not stand for
/// one.
[[nodiscard]] std::optional<char32_t> characterOfSymbol(char symbol);

}  // namespace installer::rtf
