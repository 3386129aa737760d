// The reader of styled texts.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "foundation/rtf/RtfReader.h"
#include "foundation/text/Text.h"
#include "tests/fuzz/FuzzInput.h"

namespace {

using installer::fuzz::require;

bool isVisibleText(std::string_view text) {
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        const bool isControl = byte < 0x20 && character != '\n' && character != '\t';
        if (isControl || byte == 0x7F) return false;
    }
    return installer::isUtf8(text);
}

void checkRun(const installer::TextRun& run) {
    require(!run.text.empty() && isVisibleText(run.text));
    require(isVisibleText(run.style.fontFamily) && run.style.fontFamily.size() <= 128);
    require(isVisibleText(run.style.link) && run.style.link.size() <= 2048);
    require(run.style.pointSize >= 0 && run.style.pointSize <= 1638);
}

void checkParagraph(const installer::Paragraph& paragraph) {
    for (const double distance :
         {paragraph.leftIndent, paragraph.rightIndent, paragraph.firstLineIndent,
          paragraph.spaceBefore, paragraph.spaceAfter}) {
        require(std::abs(distance) <= 1584);
    }
    const installer::TextRun* last = nullptr;
    for (const installer::TextRun& run : paragraph.runs) {
        checkRun(run);
        require(last == nullptr || last->style != run.style);
        last = &run;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto outcome = installer::readRtf(installer::fuzz::textOf(data, size));
    if (const auto* error = std::get_if<installer::RtfError>(&outcome)) {
        require(!error->reason.empty());
        return 0;
    }
    const auto& text = std::get<installer::StyledText>(outcome);
    require(text.paragraphs.size() <= size);
    for (const installer::Paragraph& paragraph : text.paragraphs) checkParagraph(paragraph);
    const std::string plain = text.plainText();
    // No byte stands for more than one character, and only those of three bytes in UTF-8 are
    // written as one byte.
    require(plain.size() <= 3 * size);
    require(text.contains("%") == (plain.find('%') != std::string::npos));
    const installer::StyledText replaced = text.replacingAll("%", "%%");
    require(replaced.plainText() == installer::replacingAll(plain, "%", "%%"));
    require(replaced.replacingAll("%%", "%") == text);
    return 0;
}
