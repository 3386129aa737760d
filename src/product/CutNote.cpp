#include "product/CutNote.h"

#include "foundation/text/Format.h"
#include "product/LocalizedText.h"

namespace installer {

namespace {

// A product whose tables are older than the note has no text for it.
constexpr const char* englishNote =
    "This text is too long to be shown here in full. All of it is in this file:\n%@";

}  // namespace

void addCutNote(StyledText& text, const Bundle& bundle, const std::string& file) {
    if (!text.isCut) return;
    const std::string note = formatted(localizedText(bundle, "text_cut_fmt", englishNote), {file});
    text.paragraphs.push_back({});
    text.paragraphs.push_back({.runs = {{.text = note, .style = {.bold = true}}}});
}

}  // namespace installer
