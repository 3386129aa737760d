#include <string>

#include <gtest/gtest.h>

#include "foundation/text/VisibleText.h"

namespace installer {
namespace {

struct Row {
    const char* name;
    std::string text;
    std::string visible;
};

class VisibleText : public testing::TestWithParam<Row> {};

TEST_P(VisibleText, IsOneHarmlessLine) {
    EXPECT_EQ(visibleText(GetParam().text), GetParam().visible);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, VisibleText,
    testing::Values(
        Row{"Plain", "Found path file /a b", "Found path file /a b"}, Row{"Empty", "", ""},
        Row{"OtherScripts",
            "Fl\xC3\xA4"
            "che \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x99\x82",
            "Fl\xC3\xA4"
            "che \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x99\x82"},
        Row{"Newline", "a\nb", "a\\nb"}, Row{"CarriageReturnAndTab", "a\r\tb", "a\\r\\tb"},
        Row{"Escape", "\x1B[31m", "\\x1b[31m"}, Row{"Delete", "a\x7F", "a\\x7f"},
        Row{"Nul", std::string("a\0b", 3), "a\\x00b"}, Row{"BackslashStays", "a\\nb", "a\\nb"},
        Row{"InvalidByte", "caf\xE9!", "caf\\xe9!"}, Row{"CutCharacter", "\xE6\x97", "\\xe6\\x97"},
        Row{"OverlongNewline", "\xC0\x8A", "\\xc0\\x8a"},
        Row{"Surrogate", "\xED\xA0\x80", "\\xed\\xa0\\x80"},
        Row{"EightBitControl", "\xC2\x9B", "\\xc2\\x9b"},
        Row{"LineSeparator", "\xE2\x80\xA8", "\\xe2\\x80\\xa8"},
        Row{"NextLine", "\xC2\x85", "\\xc2\\x85"},
        Row{"ParagraphSeparator", "\xE2\x80\xA9", "\\xe2\\x80\\xa9"},
        Row{"ArabicLetterMark", "\xD8\x9C", "\\xd8\\x9c"},
        Row{"LeftToRightMark", "\xE2\x80\x8E", "\\xe2\\x80\\x8e"},
        Row{"RightToLeftMark", "\xE2\x80\x8F", "\\xe2\\x80\\x8f"},
        Row{"FirstStrongIsolate", "\xE2\x81\xA8", "\\xe2\\x81\\xa8"},
        Row{"RightToLeftOverride", "\xE2\x80\xAE", "\\xe2\\x80\\xae"}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace installer
