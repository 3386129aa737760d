#include <string>

#include <gtest/gtest.h>

#include "foundation/text/Text.h"

namespace installer::test {
namespace {

struct Letters {
    std::string script;
    std::string text;
    std::string lowerCased;
};

class LowerCase : public testing::TestWithParam<Letters> {};

TEST_P(LowerCase, IsGivenByEveryScriptThatHasIt) {
    EXPECT_EQ(lowerCased(GetParam().text), GetParam().lowerCased);
}

TEST_P(LowerCase, StaysAsItIs) {
    EXPECT_EQ(lowerCased(GetParam().lowerCased), GetParam().lowerCased);
}

INSTANTIATE_TEST_SUITE_P(
    Scripts, LowerCase,
    testing::Values(Letters{"Ascii", "@AMZ[`az{ 09", "@amz[`az{ 09"},
                    Letters{"Latin", "ÄÖÜ ÀÞ × ĀĮİŁŽ", "äöü àþ × āįi\u0307łž"},
                    Letters{"TitleCase", "ǅǇǈ", "ǆǉǉ"}, Letters{"LongDistance", "ẞŸȺ", "ßÿⱥ"},
                    Letters{"Greek", "ΑΩΣΆ", "αωσά"}, Letters{"Cyrillic", "АЯЁЂҔ", "аяёђҕ"},
                    Letters{"Armenian", "ԱՖ", "աֆ"}, Letters{"Georgian", "ᲐႠ", "აⴀ"},
                    Letters{"FullWidth", "ＡＺ", "ａｚ"}, Letters{"SymbolsWithCase", "ⅧⒶK", "ⅷⓐk"},
                    Letters{"FourBytes", "𐐀𐐧𞤡", "𐐨𐑏𞥃"},
                    Letters{"NoCase", "日本語 ª ß", "日本語 ª ß"}, Letters{"Empty", "", ""}),
    [](const auto& row) { return row.param.script; });

TEST(LowerCaseText, EverySecondLetterOfAnAlternatingRangeIsLeftAlone) {
    EXPECT_EQ(lowerCased("ĀāĂă"), "āāăă");
    EXPECT_EQ(lowerCased("ĹĺŇň"), "ĺĺňň");
}

TEST(LowerCaseText, ALettersPlaceInItsWordDoesNotCount) {
    EXPECT_EQ(lowerCased("ΟΔΟΣ"), "οδοσ");
}

}  // namespace
}  // namespace installer::test
