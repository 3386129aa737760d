#pragma once

#include <cstdint>
#include <optional>

#include "foundation/rtf/ControlWords.h"
#include "foundation/text/StyledText.h"

namespace installer::rtf {

/// How characters look, in the document's own numbers: small, since every group keeps one.
struct CharacterFormat {
    std::int32_t font = -1;       ///< in the font table
    std::int32_t halfPoints = 0;  ///< 0 where the document says nothing
    std::int32_t color = 0;       ///< in the colour table
    std::int32_t field = -1;      ///< whose result the characters are
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikethrough = false;
    bool hidden = false;

    friend bool operator==(const CharacterFormat&, const CharacterFormat&) = default;
};

/// How a paragraph looks; distances are in twentieths of a point.
struct ParagraphFormat {
    Paragraph::Alignment alignment = Paragraph::Alignment::natural;
    bool rightToLeft = false;
    std::int32_t leftIndent = 0;
    std::int32_t rightIndent = 0;
    std::int32_t firstLineIndent = 0;
    std::int32_t spaceBefore = 0;
    std::int32_t spaceAfter = 0;
};

/// Changes the format as a control word with this number asks; `plainFont` is the font that
/// characters without one have.
void apply(CharacterProperty property, std::optional<std::int32_t> number, std::int32_t plainFont,
           CharacterFormat& format);
void apply(ParagraphProperty property, std::optional<std::int32_t> number, ParagraphFormat& format);

/// A paragraph of this format, without characters.
[[nodiscard]] Paragraph emptyParagraph(const ParagraphFormat& format);

}  // namespace installer::rtf
