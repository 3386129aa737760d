#include "foundation/rtf/TextFormat.h"

#include <algorithm>

namespace installer::rtf {

namespace {

constexpr std::int32_t largestHalfPoints = 3276;
/// The greatest distance that editors allow, 22 inches.
constexpr std::int32_t largestDistance = 31680;

std::int32_t distance(std::optional<std::int32_t> number) {
    return std::clamp(number.value_or(0), -largestDistance, largestDistance);
}

double points(std::int32_t twentieths) {
    return twentieths / 20.0;
}

}  // namespace

void apply(CharacterProperty property, std::optional<std::int32_t> number, std::int32_t plainFont,
           CharacterFormat& format) {
    const bool isOn = number != 0;
    switch (property) {
        case CharacterProperty::plain:
            format = {.font = plainFont, .field = format.field};
            break;
        case CharacterProperty::font:
            format.font = number.value_or(plainFont);
            break;
        case CharacterProperty::size:
            format.halfPoints = std::clamp(number.value_or(0), 0, largestHalfPoints);
            break;
        case CharacterProperty::color:
            format.color = number.value_or(0);
            break;
        case CharacterProperty::bold:
            format.bold = isOn;
            break;
        case CharacterProperty::italic:
            format.italic = isOn;
            break;
        case CharacterProperty::underline:
            format.underline = isOn;
            break;
        case CharacterProperty::noUnderline:
            format.underline = false;
            break;
        case CharacterProperty::strikethrough:
            format.strikethrough = isOn;
            break;
        case CharacterProperty::hidden:
            format.hidden = isOn;
            break;
    }
}

void apply(ParagraphProperty property, std::optional<std::int32_t> number,
           ParagraphFormat& format) {
    using Alignment = Paragraph::Alignment;
    switch (property) {
        case ParagraphProperty::defaults:
            format = {};
            break;
        case ParagraphProperty::alignedLeft:
            format.alignment = Alignment::left;
            break;
        case ParagraphProperty::alignedRight:
            format.alignment = Alignment::right;
            break;
        case ParagraphProperty::centered:
            format.alignment = Alignment::center;
            break;
        case ParagraphProperty::justified:
            format.alignment = Alignment::justified;
            break;
        case ParagraphProperty::alignedNaturally:
            format.alignment = Alignment::natural;
            break;
        case ParagraphProperty::leftToRight:
            format.rightToLeft = false;
            break;
        case ParagraphProperty::rightToLeft:
            format.rightToLeft = true;
            break;
        case ParagraphProperty::leftIndent:
            format.leftIndent = distance(number);
            break;
        case ParagraphProperty::rightIndent:
            format.rightIndent = distance(number);
            break;
        case ParagraphProperty::firstLineIndent:
            format.firstLineIndent = distance(number);
            break;
        case ParagraphProperty::spaceBefore:
            format.spaceBefore = distance(number);
            break;
        case ParagraphProperty::spaceAfter:
            format.spaceAfter = distance(number);
            break;
    }
}

Paragraph emptyParagraph(const ParagraphFormat& format) {
    return {.alignment = format.alignment,
            .rightToLeft = format.rightToLeft,
            .leftIndent = points(format.leftIndent),
            .rightIndent = points(format.rightIndent),
            .firstLineIndent = points(format.firstLineIndent),
            .spaceBefore = points(format.spaceBefore),
            .spaceAfter = points(format.spaceAfter)};
}

}  // namespace installer::rtf
