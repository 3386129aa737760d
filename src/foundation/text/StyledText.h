#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace installer {

struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const Color&, const Color&) = default;
};

/// How a run of characters looks. The window's own look applies to each property without a value.
struct TextStyle {
    std::string fontFamily = {};
    double pointSize = 0;  ///< 0 for the window's own size
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikethrough = false;
    std::optional<Color> color = {};
    std::string link = {};  ///< the address that a click opens; empty if it is not a link

    friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

struct TextRun {
    std::string text = {};  ///< UTF-8; a line feed is a line break within the paragraph
    TextStyle style = {};

    friend bool operator==(const TextRun&, const TextRun&) = default;
};

struct Paragraph {
    enum class Alignment { natural, left, right, center, justified };

    Alignment alignment = Alignment::natural;
    bool rightToLeft = false;  ///< true if the text says so; else the window's language decides
    // Distances in points.
    double leftIndent = 0;
    double rightIndent = 0;
    double firstLineIndent = 0;  ///< relative to `leftIndent`; negative for a hanging first line
    double spaceBefore = 0;
    double spaceAfter = 0;
    std::vector<TextRun> runs = {};

    friend bool operator==(const Paragraph&, const Paragraph&) = default;
};

/// Text with styles: a plain value that does not depend on a toolkit.
struct StyledText {
    std::vector<Paragraph> paragraphs = {};
    bool isCut = false;  ///< true if the text was too long to be shown, and its end is left out

    /// One paragraph for each line of the text, without any style.
    [[nodiscard]] static StyledText fromPlainText(std::string_view text);

    /// The characters without styles; paragraphs are joined by line feeds.
    [[nodiscard]] std::string plainText() const;

    /// The same text with every occurrence of the placeholder replaced, from start to end. The
    /// replacement is not searched again. An occurrence may span runs of different styles; the
    /// replacement has the style of its first character. An empty placeholder never occurs.
    [[nodiscard]] StyledText replacingAll(std::string_view placeholder,
                                          std::string_view replacement) const;

    [[nodiscard]] bool contains(std::string_view placeholder) const;

    friend bool operator==(const StyledText&, const StyledText&) = default;
};

/// A text that may or may not have styles of its own.
using PlainOrStyledText = std::variant<std::string, StyledText>;

}  // namespace installer
