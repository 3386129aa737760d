#include "foundation/rtf/DocumentBuilder.h"

#include <string>
#include <utility>

#include "foundation/values/Utf8.h"

namespace installer::rtf {

void DocumentBuilder::add(char32_t character, const CharacterFormat& format) {
    std::string bytes;
    appendUtf8(bytes, character);
    const bool beginsRun = text_.empty() || format != format_;
    if (!length_.takes(bytes.size(), beginsRun ? 1 : 0)) return;
    if (format != format_) {
        endRun();
        format_ = format;
    }
    text_ += bytes;
}

void DocumentBuilder::endParagraph(const ParagraphFormat& format) {
    if (!length_.takes(1, 1) && !hasOpenParagraph()) return;
    endRun();
    Paragraph paragraph = emptyParagraph(format);
    paragraph.runs = std::exchange(runs_, {});
    document_.paragraphs.push_back(std::move(paragraph));
}

StyledText DocumentBuilder::take() {
    document_.isCut = length_.isExceeded();
    return std::move(document_);
}

bool DocumentBuilder::hasOpenParagraph() const {
    return !runs_.empty() || !text_.empty();
}

void DocumentBuilder::endRun() {
    if (text_.empty()) return;
    TextStyle style = styleOf(format_);
    // Different numbers can mean the same look.
    if (!runs_.empty() && runs_.back().style == style) {
        runs_.back().text += text_;
    } else {
        runs_.push_back({.text = text_, .style = std::move(style)});
    }
    text_.clear();
}

TextStyle DocumentBuilder::styleOf(const CharacterFormat& format) const {
    const FontTable::Font* const font = tables_.fonts.find(format.font);
    return {.fontFamily = font == nullptr ? "" : font->family,
            .pointSize = format.halfPoints / 2.0,
            .bold = format.bold,
            .italic = format.italic,
            .underline = format.underline,
            .strikethrough = format.strikethrough,
            .color = tables_.colors.find(format.color),
            .link = tables_.fields.link(format.field)};
}

}  // namespace installer::rtf
