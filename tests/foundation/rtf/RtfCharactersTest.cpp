#include <string>

#include <gtest/gtest.h>

#include "tests/foundation/rtf/RtfReading.h"

namespace installer::test {
namespace {

std::string plainTextOf(const std::string& rtf) {
    return textOf(rtf).plainText();
}

struct Row {
    std::string name;
    std::string body;
    std::string text;
};

class RtfCharacters : public testing::TestWithParam<Row> {};

TEST_P(RtfCharacters, AreRead) {
    EXPECT_EQ(plainTextOfBody(GetParam().body), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Symbols, RtfCharacters,
    testing::Values(Row{"Literal", "\\{a\\\\b\\}", "{a\\b}"},
                    Row{"NonBreaking", "a\\~b\\_c", "a\u00A0b\u2011c"},
                    Row{"OptionalHyphen", "a\\-b", "a\u00ADb"}, Row{"Index", "a\\|\\:b", "ab"},
                    Row{"Tabs", "a\\tab b\tc\\\td\\'09e", "a\tb\tc\td\te"},
                    Row{"Dashes", "\\emdash\\endash", "—–"},
                    Row{"Spaces", "\\emspace\\enspace\\qmspace", "\u2003\u2002\u2005"},
                    Row{"Bullet", "\\bullet", "•"},
                    Row{"Quotes", "\\lquote a\\rquote\\ldblquote b\\rdblquote", "‘a’“b”"},
                    Row{"Joiners", "\\zwj\\zwnj", "\u200D\u200C"},
                    Row{"DirectionMarks", "\\ltrmark\\rtlmark", "\u200E\u200F"}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(HexBytes, RtfCharacters,
                         testing::Values(Row{"Lower", "\\'e4", "ä"}, Row{"Upper", "\\'E4", "ä"},
                                         Row{"Ascii", "\\'5c\\'7b\\'41", "\\{A"},
                                         Row{"NotHex", "a\\'zzb", "azzb"},
                                         Row{"HalfHex", "a\\'4gb", "a4gb"},
                                         Row{"WithoutCharacter", "\\'81", "\uFFFD"}),
                         [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    UnicodeEscapes, RtfCharacters,
    testing::Values(
        Row{"WithFallback", "\\u228?b", "äb"}, Row{"WithBlank", "\\u228 ?b", "äb"},
        Row{"WithHexFallback", "\\u228\\'e4b", "äb"},
        Row{"WithWordAsFallback", "\\u8212\\emdash b", "—b"},
        Row{"WithSymbolAsFallback", "\\u160\\~b", "\u00A0b"},
        Row{"WithFallbackOnTheNextLine", "\\u228\r\n?b", "äb"},
        Row{"WithRawFallback", "\\u228\xC3\xA4", "ä"},
        Row{"WithoutFallback", "\\uc0\\u228 b", "äb"},
        Row{"WithTwoFallbacks", "\\uc2\\u12354\\'82\\'a0b", "あb"},
        Row{"FallbackLengthOfAGroup", "{\\uc0\\u228 b}\\u228?c", "äbäc"},
        Row{"FallbackEndsWithItsGroup", "{\\u228}b", "äb"},
        Row{"FallbackEndsBeforeAGroup", "\\u228{b}", "äb"},
        Row{"ForgottenFallback", "\\u228\\u246\\par c", "äö\nc"},
        Row{"ForgottenFallbackBeforeAFormat", "\\u228\\b c", "äc"},
        Row{"NegativeFallbackLength", "\\uc-1\\u228 b", "äb"}, Row{"Negative", "\\u-10?", "\uFFF6"},
        Row{"NegativeHan", "\\u-26438?", "\u98BA"}, Row{"Pair", "\\u55357?\\u56832?", "😀"},
        Row{"NegativePair", "\\u-10179?\\u-8704?", "😀"},
        Row{"PairWithoutFallback", "\\uc0\\u55357 \\u56832 ", "😀"},
        Row{"PairWithTwoFallbacks", "\\uc2\\u-10179\\'81\\'63\\u-8704\\'81\\'63", "😀"},
        Row{"WholeCodePoint", "\\u128512?", "😀"}, Row{"HighHalf", "\\u55357?b", "\uFFFDb"},
        Row{"LowHalf", "\\u56832?b", "\uFFFDb"},
        Row{"TwoHighHalves", "\\u55357?\\u55357?\\u56832?", "\uFFFD😀"},
        Row{"HalfAtTheEnd", "{\\u55357?}", "\uFFFD"},
        Row{"HalvesApart", "{\\u55357?}{\\u56832?}", "\uFFFD\uFFFD"},
        Row{"BeyondTheLast", "\\u1114112?", "\uFFFD"}, Row{"WithoutNumber", "\\u b", "b"}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(RawBytes, RtfCharacters,
                         testing::Values(Row{"Utf8",
                                             "Gr\xC3\xB6\xC3\x9F"
                                             "e \xF0\x9F\x98\x80",
                                             "Größe 😀"},
                                         Row{"CodePage",
                                             "Gr\xF6\xDF"
                                             "e",
                                             "Größe"},
                                         Row{"OneByteThatIsNoUtf8", "\xC3\xB6\xF6", "Ã¶ö"},
                                         Row{"CutShort", "\xE2\x82 x", "â‚ x"}),
                         [](const auto& row) { return row.param.name; });

struct CodePage {
    int number;
    std::string hex;
    std::string text;
};

class RtfCharactersOfACodePage : public testing::TestWithParam<CodePage> {};

TEST_P(RtfCharactersOfACodePage, AreThoseOfTheBytes) {
    EXPECT_EQ(plainTextOf("{\\rtf1\\ansi\\ansicpg" + std::to_string(GetParam().number) + " " +
                          GetParam().hex + "}"),
              GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    WesternAndOthers, RtfCharactersOfACodePage,
    testing::Values(CodePage{437, "\\'81\\'e1\\'ff", "üß\u00A0"},
                    CodePage{850, "\\'81\\'e1\\'d5", "üßı"}, CodePage{852, "\\'9f\\'e7", "čš"},
                    CodePage{866, "\\'8f\\'e0", "Пр"}, CodePage{874, "\\'a1\\'e2", "กโ"},
                    CodePage{1250, "\\'e8\\'9a\\'80", "čš€"},
                    CodePage{1251, "\\'cf\\'f0\\'b8", "Прё"},
                    CodePage{1252, "\\'80\\'df\\'ff", "€ßÿ"}, CodePage{1253, "\\'c1\\'f9", "Αω"},
                    CodePage{1254, "\\'fd\\'de", "ıŞ"}, CodePage{1255, "\\'f9\\'ec", "של"},
                    CodePage{1256, "\\'e3\\'d1", "مر"}, CodePage{1257, "\\'e0\\'fe", "ąž"},
                    CodePage{1258, "\\'f5\\'fe", "ơ₫"}, CodePage{10000, "\\'8a\\'a7\\'d2", "äß“"},
                    CodePage{65001, "\\'c3\\'a4\\'f0\\'9f\\'98\\'80", "ä😀"},
                    CodePage{65001, "\\'c3x\\'a4\\'e2\\'82", "\uFFFDx\uFFFD\uFFFD"},
                    CodePage{0, "\\'e4", "ä"}, CodePage{4711, "\\'e4", "ä"}),
    [](const auto& row) {
        return "Row" + std::to_string(row.index) + "Number" + std::to_string(row.param.number);
    });

INSTANTIATE_TEST_SUITE_P(
    Japanese, RtfCharactersOfACodePage,
    testing::Values(CodePage{932, "\\'93\\'fa\\'96\\'7b", "日本"},
                    CodePage{932, "\\'82\\'a0 \\'83\\'7e", "あ ミ"},
                    CodePage{932, "\\'88\\'9f\\'ea\\'a4\\'fc\\'4b",
                             "亜熙黑"},  // ends of the levels
                    CodePage{932, "\\'81\\'40\\'81\\'ac\\'e0\\'40", "\u3000〓漾"},
                    CodePage{932, "\\'b1\\'df", "ｱﾟ"},  // half-width forms take one byte
                    CodePage{932, "\\'83\\\\\\'83\\{\\'83\\}", "ソボマ"},
                    CodePage{932, "\\'82A\\'93\r\n\\'fa", "\uFFFD日"},
                    CodePage{932, "\\'93 b\\'93}{\\'fa\\'fa", "\uFFFD b\uFFFD"}),
    [](const auto& row) { return "Row" + std::to_string(row.index); });

INSTANTIATE_TEST_SUITE_P(OtherDoubleByte, RtfCharactersOfACodePage,
                         testing::Values(CodePage{936,
                                                  "a\\'c4\\'e3\\'ba\\'c3"
                                                  "b",
                                                  "a\uFFFD\uFFFDb"},
                                         CodePage{949, "\\'b0\\'a1 c", "\uFFFD c"},
                                         CodePage{950, "\\'a4\\\\d", "\uFFFDd"}),
                         [](const auto& row) {
                             return "Number" + std::to_string(row.param.number);
                         });

TEST(RtfCharactersCodePages, ADocumentNamesItsCodePageInSeveralWays) {
    EXPECT_EQ(plainTextOf("{\\rtf1\\ansi\\'8a}"), "Š");
    EXPECT_EQ(plainTextOf("{\\rtf1\\mac\\'8a}"), "ä");
    EXPECT_EQ(plainTextOf("{\\rtf1\\pc\\'9b}"), "¢");
    EXPECT_EQ(plainTextOf("{\\rtf1\\pca\\'9b}"), "ø");
    EXPECT_EQ(plainTextOf("{\\rtf1\\'8a}"), "Š");
}

struct CharacterSet {
    int number;
    std::string hex;
    std::string text;
};

class RtfCharactersOfAFontsCharacterSet : public testing::TestWithParam<CharacterSet> {};

TEST_P(RtfCharactersOfAFontsCharacterSet, AreThoseOfItsCodePage) {
    EXPECT_EQ(plainTextOf("{\\rtf1\\ansi\\ansicpg1257{\\fonttbl{\\f0 X;}{\\f1\\fnil\\fcharset" +
                          std::to_string(GetParam().number) + " Y;}}\\f0\\'e0 \\f1 " +
                          GetParam().hex + "\\f0  \\'e0}"),
              "ą " + GetParam().text + " ą");
}

INSTANTIATE_TEST_SUITE_P(
    CharacterSets, RtfCharactersOfAFontsCharacterSet,
    testing::Values(CharacterSet{0, "\\'e0", "à"}, CharacterSet{1, "\\'e0", "ą"},
                    CharacterSet{2, "a\\'b7\\'a7\\'d8\\'fc\\'81\\u-3913?\\u61551?",
                                 "a•▪➢✓\uFFFD•o"},
                    CharacterSet{77, "\\'8a", "ä"}, CharacterSet{128, "\\'82\\'a0", "あ"},
                    CharacterSet{129, "\\'b0\\'a1", "\uFFFD"},
                    CharacterSet{134, "\\'b0\\'a1", "\uFFFD"},
                    CharacterSet{136, "\\'b0\\'a1", "\uFFFD"}, CharacterSet{161, "\\'e1", "α"},
                    CharacterSet{162, "\\'fd", "ı"}, CharacterSet{163, "\\'fe", "₫"},
                    CharacterSet{177, "\\'f9", "ש"}, CharacterSet{178, "\\'e3", "م"},
                    CharacterSet{186, "\\'e0", "ą"}, CharacterSet{204, "\\'e6", "ж"},
                    CharacterSet{222, "\\'a1", "ก"}, CharacterSet{238, "\\'e8", "č"},
                    CharacterSet{254, "\\'81", "ü"}, CharacterSet{255, "\\'9b", "ø"},
                    CharacterSet{99, "\\'e0", "ą"}),
    [](const auto& row) { return "Number" + std::to_string(row.param.number); });

TEST(RtfCharactersCodePages, ABareBraceIsNoHalfOfACharacter) {
    EXPECT_EQ(plainTextOf("{\\rtf1\\ansi\\ansicpg932 {\x93\xFA\x96}a}"), "日\uFFFDa");
}

TEST(RtfCharactersCodePages, AFontCanNameItsCodePage) {
    EXPECT_EQ(plainTextOfBody("{\\fonttbl{\\f0\\cpg1251 X;}{\\f1\\cpg4711 Y;}}\\f0\\'e6\\f1\\'e6"),
              "жæ");
}

TEST(RtfCharactersCodePages, ACharacterDoesNotBeginInOneFontAndEndInAnother) {
    EXPECT_EQ(plainTextOfBody("{\\fonttbl{\\f0\\fcharset128 X;}{\\f1\\fcharset0 Y;}}"
                              "\\f0\\'82\\f1\\'e4"),
              "\uFFFDä");
}

}  // namespace
}  // namespace installer::test
