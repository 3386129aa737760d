#pragma once

#include <cstdint>
#include <optional>

#include "foundation/rtf/ControlWords.h"
#include "foundation/text/StyledText.h"

namespace installer::rtf {

/// How characters look, in the document's own numbers. Every group keeps one, so it is small.
struct CharacterFormat {
    std::int32_t font = -1;       ///< in the font table
    std::int32_t halfPoints = 0;  ///< 0 if the document gives no size
    std::int32_t color = 0;       ///< in the colour table
    std::int32_t field = -1;      ///< the characters are this field's result
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikethrough = false;
    bool hidden = false;

    friend bool operator==(const CharacterFormat&, const CharacterFormat&) = default;
};

/// How a paragraph looks. Distances are in twentieths of a point.
struct ParagraphFormat {
    Paragraph::Alignment alignment = Paragraph::Alignment::natural;
    bool rightToLeft = false;
    std::int32_t leftIndent = 0;
    std::int32_t rightIndent = 0;
    std::int32_t firstLineIndent = 0;
    std::int32_t spaceBefore = 0;
    std::int32_t spaceAfter = 0;
};

/// Applies a control word with this parameter to the format. `plainFont` is the default font.
void apply(CharacterProperty property, std::optional<std::int32_t> number, std::int32_t plainFont,
           CharacterFormat& format);
void apply(ParagraphProperty property, std::optional<std::int32_t> number, ParagraphFormat& format);

/// A paragraph of this format, without characters.
[[nodiscard]] Paragraph emptyParagraph(const ParagraphFormat& format);

}  // namespace installer::rtf
