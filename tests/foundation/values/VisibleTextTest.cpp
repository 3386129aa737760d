#include <string>

#include <gtest/gtest.h>

#include "foundation/values/VisibleText.h"

namespace installer::test {
namespace {

struct VisibleTextRow {
    const char* name;
    std::string text;
    std::string visible;
};

class VisibleText : public testing::TestWithParam<VisibleTextRow> {};

TEST_P(VisibleText, IsOneHarmlessLine) {
    EXPECT_EQ(visibleText(GetParam().text), GetParam().visible);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, VisibleText,
    testing::Values(VisibleTextRow{"Plain", "Found path file /a b", "Found path file /a b"},
                    VisibleTextRow{"Empty", "", ""},
                    VisibleTextRow{"OtherScripts",
                                   "Fl\xC3\xA4"
                                   "che \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x99\x82",
                                   "Fl\xC3\xA4"
                                   "che \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x99\x82"},
                    VisibleTextRow{"Newline", "a\nb", "a\\nb"},
                    VisibleTextRow{"CarriageReturnAndTab", "a\r\tb", "a\\r\\tb"},
                    VisibleTextRow{"Escape", "\x1B[31m", "\\x1b[31m"},
                    VisibleTextRow{"Delete", "a\x7F", "a\\x7f"},
                    VisibleTextRow{"Nul", std::string("a\0b", 3), "a\\x00b"},
                    VisibleTextRow{"BackslashStays", "a\\nb", "a\\nb"},
                    VisibleTextRow{"InvalidByte", "caf\xE9!", "caf\\xe9!"},
                    VisibleTextRow{"CutCharacter", "\xE6\x97", "\\xe6\\x97"},
                    VisibleTextRow{"OverlongNewline", "\xC0\x8A", "\\xc0\\x8a"},
                    VisibleTextRow{"Surrogate", "\xED\xA0\x80", "\\xed\\xa0\\x80"},
                    VisibleTextRow{"EightBitControl", "\xC2\x9B", "\\xc2\\x9b"},
                    VisibleTextRow{"LineSeparator", "\xE2\x80\xA8", "\\xe2\\x80\\xa8"},
                    VisibleTextRow{"NextLine", "\xC2\x85", "\\xc2\\x85"},
                    VisibleTextRow{"ParagraphSeparator", "\xE2\x80\xA9", "\\xe2\\x80\\xa9"},
                    VisibleTextRow{"ArabicLetterMark", "\xD8\x9C", "\\xd8\\x9c"},
                    VisibleTextRow{"LeftToRightMark", "\xE2\x80\x8E", "\\xe2\\x80\\x8e"},
                    VisibleTextRow{"RightToLeftMark", "\xE2\x80\x8F", "\\xe2\\x80\\x8f"},
                    VisibleTextRow{"FirstStrongIsolate", "\xE2\x81\xA8", "\\xe2\\x81\\xa8"},
                    VisibleTextRow{"RightToLeftOverride", "\xE2\x80\xAE", "\\xe2\\x80\\xae"}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace installer::test
