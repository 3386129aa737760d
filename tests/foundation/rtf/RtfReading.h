#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <variant>

#include <gtest/gtest.h>

#include "foundation/rtf/RtfReader.h"

namespace installer {

inline void PrintTo(const TextRun& run, std::ostream* stream) {
    const TextStyle& style = run.style;
    *stream << testing::PrintToString(run.text) << " in " << style.fontFamily << " "
            << style.pointSize << (style.bold ? " bold" : "") << (style.italic ? " italic" : "")
            << (style.underline ? " underline" : "") << (style.strikethrough ? " strike" : "")
            << (style.color ? " coloured" : "") << " " << style.link;
}

inline void PrintTo(const Paragraph& paragraph, std::ostream* stream) {
    *stream << "alignment " << static_cast<int>(paragraph.alignment)
            << (paragraph.rightToLeft ? " rtl" : "") << ", indents " << paragraph.leftIndent << " "
            << paragraph.rightIndent << " " << paragraph.firstLineIndent << ", space "
            << paragraph.spaceBefore << " " << paragraph.spaceAfter << ", "
            << testing::PrintToString(paragraph.runs);
}

}  // namespace installer

namespace installer::test {

/// What the document says; the test fails when it is refused.
inline StyledText textOf(std::string_view rtf) {
    auto outcome = readRtf(rtf);
    if (const auto* error = std::get_if<RtfError>(&outcome)) {
        ADD_FAILURE() << "refused: " << error->reason << "\n" << rtf.substr(0, 200);
        return {};
    }
    return std::get<StyledText>(outcome);
}

/// What a small document with this body says.
inline StyledText textOfBody(const std::string& body) {
    return textOf("{\\rtf1\\ansi\\ansicpg1252 " + body + "}");
}

inline std::string plainTextOfBody(const std::string& body) {
    return textOfBody(body).plainText();
}

/// The one run of a small document with this body.
inline TextRun runOfBody(const std::string& body) {
    const StyledText text = textOfBody(body);
    if (text.paragraphs.size() == 1 && text.paragraphs.front().runs.size() == 1) {
        return text.paragraphs.front().runs.front();
    }
    ADD_FAILURE() << "not one run: " << body;
    return {};
}

inline std::string errorOf(std::string_view rtf) {
    const auto outcome = readRtf(rtf);
    const auto* error = std::get_if<RtfError>(&outcome);
    return error == nullptr ? "none" : error->reason;
}

}  // namespace installer::test
