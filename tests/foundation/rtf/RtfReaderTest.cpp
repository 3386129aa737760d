#include <string>

#include <gtest/gtest.h>

#include "foundation/text/ShownLength.h"
#include "tests/foundation/rtf/RtfReading.h"

namespace installer::test {
namespace {

using namespace std::string_literals;

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    for (; count > 0; --count) result += text;
    return result;
}

TEST(RtfReader, AnEmptyTextIsRefused) {
    EXPECT_EQ(errorOf(""), "the text is empty");
}

struct Beginning {
    std::string name;
    std::string text;
};

class RtfReaderOtherBeginning : public testing::TestWithParam<Beginning> {};

TEST_P(RtfReaderOtherBeginning, IsRefused) {
    EXPECT_EQ(errorOf(GetParam().text), "the text does not begin with {\\rtf");
}

INSTANTIATE_TEST_SUITE_P(
    Beginnings, RtfReaderOtherBeginning,
    testing::Values(Beginning{"PlainText", "hello"}, Beginning{"BlankBefore", " {\\rtf1 a}"},
                    Beginning{"NoBrace", "\\rtf1 a"}, Beginning{"BraceAlone", "{"},
                    Beginning{"AnotherWord", "{\\rtfx a}"}, Beginning{"NoBackslash", "{rtf1 a}"},
                    Beginning{"TextBefore", "{a\\rtf1}"}, Beginning{"HalfAWord", "{\\rt"},
                    Beginning{"GroupBefore", "{{\\rtf1 a}}"}, Beginning{"Nul", std::string(1, 0)}),
    [](const auto& row) { return row.param.name; });

class RtfReaderTruncatedDocument : public testing::TestWithParam<Beginning> {};

TEST_P(RtfReaderTruncatedDocument, IsRefused) {
    EXPECT_EQ(errorOf(GetParam().text), "the text ends before its groups do");
}

INSTANTIATE_TEST_SUITE_P(
    Cuts, RtfReaderTruncatedDocument,
    testing::Values(Beginning{"Word", "{\\rtf1"}, Beginning{"Text", "{\\rtf1 a"},
                    Beginning{"AfterAGroup", "{\\rtf1 {\\b a}"},
                    Beginning{"Backslash", "{\\rtf1 a\\"}, Beginning{"Hex", "{\\rtf1 a\\'"},
                    Beginning{"HalfHex", "{\\rtf1 a\\'e"}, Beginning{"Unicode", "{\\rtf1 \\u"},
                    Beginning{"EscapedBrace", "{\\rtf1 a\\}"},
                    Beginning{"SkippedGroup", "{\\rtf1 {\\pict a"},
                    Beginning{"BinaryData", "{\\rtf1\\bin9 a}"},
                    Beginning{"MuchBinaryData", "{\\rtf1\\bin2147483647 a}"},
                    Beginning{"HalfACharacter", "{\\rtf1\\ansicpg932 \\'82"}),
    [](const auto& row) { return row.param.name; });

TEST(RtfReader, WhatFollowsTheLastGroupIsIgnored) {
    EXPECT_EQ(textOf("{\\rtf1 a}b}{{\\par").plainText(), "a");
    EXPECT_EQ(textOf(std::string("{\\rtf1 a}\n\0\0", 12)).plainText(), "a");
}

TEST(RtfReader, NulsAndOtherControlCharactersAreNoText) {
    EXPECT_EQ(plainTextOfBody("a\0b\x01\x7F\\'00\\'1b\\u0?\\u10?\\u133?c"s), "abc");
}

TEST(RtfReader, GroupsMayNestDeeplyButNotBeyondAllMeasure) {
    EXPECT_EQ(textOf("{\\rtf1 " + repeated("{", 9'999) + "a" + repeated("}", 10'000)).plainText(),
              "a");
    EXPECT_EQ(errorOf("{\\rtf1 " + repeated("{", 10'000) + "a" + repeated("}", 10'001)),
              "the groups of the text nest too deeply");
    EXPECT_EQ(errorOf("{\\rtf1 " + repeated("{", 5'000'000)),
              "the groups of the text nest too deeply");
}

TEST(RtfReader, ADocumentWithoutTextHasNoParagraphs) {
    EXPECT_EQ(textOf("{\\rtf1}"), StyledText{});
    EXPECT_EQ(textOf("{\\rtf}"), StyledText{});
}

TEST(RtfReader, AParagraphEndsWithItsMarkOrWithTheText) {
    EXPECT_EQ(textOfBody("a\\par b").paragraphs.size(), 2U);
    EXPECT_EQ(textOfBody("a\\par b\\par").paragraphs.size(), 2U);
    EXPECT_EQ(textOfBody("a\\par\\par b\\par\\par").plainText(), "a\n\nb\n");
    EXPECT_EQ(textOfBody("\\par").paragraphs, std::vector<Paragraph>(1));
}

TEST(RtfReader, ABackslashBeforeALineEndEndsAParagraph) {
    EXPECT_EQ(textOfBody("a\\\nb\\\r\nc\\\rd").plainText(), "a\nb\nc\nd");
    EXPECT_EQ(textOfBody("a\\\nb\\\r\nc\\\rd").paragraphs.size(), 4U);
}

TEST(RtfReader, LineEndsOfTheFileAreNoText) {
    EXPECT_EQ(plainTextOfBody("a\r\nb\nc \n d"), "abc  d");
}

TEST(RtfReader, ALineBreakStaysWithinItsParagraph) {
    const StyledText text = textOfBody("a\\line b\\u8232?c\\lbr1 d");
    EXPECT_EQ(text.paragraphs.size(), 1U);
    EXPECT_EQ(text.plainText(), "a\nb\nc\nd");
}

TEST(RtfReader, TheSeparatorOfParagraphsEndsOne) {
    EXPECT_EQ(textOfBody("a\\u8233?b").paragraphs.size(), 2U);
}

TEST(RtfReader, ANewPageEndsAParagraphOnlyWhereOneHasBegun) {
    EXPECT_EQ(plainTextOfBody("a\\par\\page b\\page c\\sect d"), "a\nb\nc\nd");
}

TEST(RtfReader, TablesBecomeTabsAndParagraphs) {
    EXPECT_EQ(plainTextOfBody("\\trowd\\cellx1000\\cellx2000\\intbl a\\cell b\\cell\\row"
                              "\\intbl c\\cell d\\cell\\row\\pard e"),
              "a\tb\t\nc\td\t\ne");
}

TEST(RtfReader, UnknownWordsChangeNothing) {
    EXPECT_EQ(plainTextOfBody("a\\kerning0 b\\super c\\nosupersub\\nosuchword-3 d\\caps{\\new e}"),
              "abcde");
}

TEST(RtfReader, ABlankAfterAWordBelongsToIt) {
    EXPECT_EQ(plainTextOfBody("a\\b  b\\b0\\i-1 c\\i0- d"), "a bc- d");
}

TEST(RtfReader, NumbersBeyondAllMeasureAreHarmless) {
    EXPECT_EQ(plainTextOfBody("\\li99999999999999999999\\fs-99999999999999999999"
                              "\\f99999999999\\cf99999999999\\u99999999999?\\u-99999999999?a"),
              "\uFFFD\uFFFDa");
}

struct Skipped {
    std::string name;
    std::string group;
};

class RtfReaderGroupThatIsNoText : public testing::TestWithParam<Skipped> {};

TEST_P(RtfReaderGroupThatIsNoText, IsLeftOut) {
    EXPECT_EQ(plainTextOfBody("a" + GetParam().group + "b"), "ab");
}

INSTANTIATE_TEST_SUITE_P(
    Groups, RtfReaderGroupThatIsNoText,
    testing::Values(
        Skipped{"Optional", "{\\*\\nosuchword x{y\\par}\\'e4\\u228?}"},
        Skipped{"OptionalOnTwoLines", "{\\*\n\\nosuchword x}"},
        Skipped{"Information", "{\\info{\\title x}{\\author y}}"},
        Skipped{"StyleSheet", "{\\stylesheet{\\s0 Normal;}{\\*\\cs1 Link;}}"},
        Skipped{"Picture", "{\\pict\\pngblip 89504e470d0a}"},
        Skipped{"BinaryPicture", "{\\pict\\bin5 }}}}\\}"},
        Skipped{"PictureTwice", "{\\*\\shppict{\\pict 01}}{\\nonshppict{\\pict 02}}"},
        Skipped{"Object", "{\\object\\objemb{\\*\\objdata 0102}{\\result x}}"},
        Skipped{"Header", "{\\header x\\par}{\\headerl x}{\\headerr x}{\\headerf x}"},
        Skipped{"Footer", "{\\footer x\\par}{\\footerl x}{\\footerr x}{\\footerf x}"},
        Skipped{"Footnote", "{\\footnote x\\par}"},
        Skipped{"Mark", "{\\*\\bkmkstart x}{\\*\\bkmkend x}{\\xe x}{\\tc x}"},
        Skipped{"ListTable", "{\\*\\listtable{\\list{\\listname x;}}}{\\listoverridetable x}"},
        Skipped{"ListDescription", "{\\*\\pn\\pnlvlblt{\\pntxtb\\'B7}{\\pntxta x}}{\\pntxta y}"},
        Skipped{"Shape", "{\\shp{\\*\\shpinst{\\sp{\\sn x}}{\\shptxt y}}}"},
        Skipped{"FontsAndColors", "{\\fonttbl{\\f0 X;}}{\\colortbl;\\red1 x;}"},
        Skipped{"HiddenText", "{\\v x\\line y\\tab z}"}),
    [](const auto& row) { return row.param.name; });

TEST(RtfReader, TheMarksOfListItemsAreText) {
    EXPECT_EQ(plainTextOfBody("{\\listtext\\tab 1.\\tab}one\\par{\\pntext\\'b7\\tab}two"),
              "\t1.\tone\n\u00B7\ttwo");
}

TEST(RtfReader, TheUnicodeOneOfTwoAlternativesIsTheText) {
    EXPECT_EQ(plainTextOfBody("a{\\upr{Zlo\\'9eka}{\\*\\ud{Z\\u322?o\\'9eka}}}b"), "aZłožkab");
    EXPECT_EQ(plainTextOfBody("a{\\pict{\\upr{x}{\\*\\ud{y}}}}b"), "ab");
}

TEST(RtfReader, HiddenTextEndsWithItsWordOrGroup) {
    EXPECT_EQ(plainTextOfBody("a\\v b\\v0 c{\\v d}e"), "ace");
}

TEST(RtfReader, LongFallbacksTakeNoMoreThanTheirShare) {
    EXPECT_EQ(plainTextOfBody("\\uc2000000\\u228 " + std::string(2'000'000, '\xE4') + "b"), "äb");
}

TEST(RtfReader, LongTextsTakeNoMoreThanTheirShare) {
    // What grew with the square of the length would take hours here.
    const std::string body = "{\\fonttbl{\\f0 " + std::string(1'000'000, 'x') + ";}}" +
                             "{\\field{\\*\\fldinst HYPERLINK \"" + std::string(1'000'000, 'y') +
                             "\"}{\\fldrslt " + repeated("\\b a\\b0 b", 100'000) + "}}" +
                             repeated("\xE4\\'82", 300'000) +
                             repeated("{\\field{\\fldrslt c}", 5'000) + repeated("}", 5'000);
    const StyledText text = textOfBody(body);
    ASSERT_EQ(text.paragraphs.size(), 1U);
    EXPECT_TRUE(text.isCut);
    EXPECT_EQ(text.paragraphs.front().runs.size(), ShownLength::mostPieces);
    EXPECT_EQ(text.paragraphs.front().runs.front(),
              (TextRun{.text = "a", .style = {.bold = true}}));
}

}  // namespace
}  // namespace installer::test
