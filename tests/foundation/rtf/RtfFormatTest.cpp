#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/foundation/rtf/RtfReading.h"

namespace installer::test {
namespace {

struct StyleRow {
    std::string name;
    std::string words;
    TextStyle style;
};

class RtfFormatOfCharacters : public testing::TestWithParam<StyleRow> {};

TEST_P(RtfFormatOfCharacters, GivesTheStyle) {
    EXPECT_EQ(runOfBody(GetParam().words + "\na"), (TextRun{"a", GetParam().style}));
}

INSTANTIATE_TEST_SUITE_P(
    Styles, RtfFormatOfCharacters,
    testing::Values(
        StyleRow{"Nothing", "", {}}, StyleRow{"Bold", "\\b", {.bold = true}},
        StyleRow{"BoldOne", "\\b1", {.bold = true}}, StyleRow{"BoldOff", "\\b\\b0", {}},
        StyleRow{"Italic", "\\i", {.italic = true}}, StyleRow{"ItalicOff", "\\i\\i0", {}},
        StyleRow{"Underline", "\\ul", {.underline = true}},
        StyleRow{"UnderlineOff", "\\ul\\ul0", {}}, StyleRow{"UnderlineNone", "\\uld\\ulnone", {}},
        StyleRow{"Dotted", "\\uld", {.underline = true}},
        StyleRow{"Double", "\\uldb", {.underline = true}},
        StyleRow{"Words", "\\ulw", {.underline = true}},
        StyleRow{"Wave", "\\ulwave", {.underline = true}}, StyleRow{"UnderlineColor", "\\ulc2", {}},
        StyleRow{"Strike", "\\strike", {.strikethrough = true}},
        StyleRow{"StrikeOff", "\\strike\\strike0", {}},
        StyleRow{"DoubleStrike", "\\striked1", {.strikethrough = true}},
        StyleRow{"Size", "\\fs26", {.pointSize = 13}},
        StyleRow{"HalfSize", "\\fs25", {.pointSize = 12.5}}, StyleRow{"SizeOfNothing", "\\fs0", {}},
        StyleRow{"NegativeSize", "\\fs-20", {}},
        StyleRow{"HugeSize", "\\fs99999", {.pointSize = 1638}},
        StyleRow{"Superscript", "\\super\\up6", {}},
        StyleRow{"Plain", "\\b\\i\\ul\\strike\\fs30\\cf1\\f1\\plain", {}},
        StyleRow{"Several", "\\b\\i\\fs48", {.pointSize = 24, .bold = true, .italic = true}},
        StyleRow{"OtherScriptsOnly", "\\ab\\ai\\afs40\\af3\\rtlch\\ltrch", {}}),
    [](const auto& row) { return row.param.name; });

TEST(RtfFormatRuns, AStyleLastsUntilItsGroupEnds) {
    const StyledText text = textOfBody("a{\\b b{\\i c}d}e");
    EXPECT_EQ(text.paragraphs.front().runs,
              (std::vector<TextRun>{{"a", {}},
                                    {"b", {.bold = true}},
                                    {"c", {.bold = true, .italic = true}},
                                    {"d", {.bold = true}},
                                    {"e", {}}}));
}

TEST(RtfFormatRuns, AStyleLastsOverParagraphs) {
    const StyledText text = textOfBody("\\b a\\par\\pard b\\plain c");
    ASSERT_EQ(text.paragraphs.size(), 2U);
    EXPECT_EQ(text.paragraphs[0].runs, (std::vector<TextRun>{{"a", {.bold = true}}}));
    EXPECT_EQ(text.paragraphs[1].runs, (std::vector<TextRun>{{"b", {.bold = true}}, {"c", {}}}));
}

TEST(RtfFormatRuns, TextOfOneLookIsOneRun) {
    EXPECT_EQ(runOfBody("a{b}\\b\\b0 c{\\cf7 d}\\f9 e").text, "abcde");
}

TEST(RtfFormatColors, AreFoundByNumber) {
    const std::string table = "{\\colortbl;\\red255\\green1\\blue2;\\blue9;\\red0\\green0\\blue0;}";
    EXPECT_EQ(runOfBody(table + "\\cf1 a").style.color, (Color{255, 1, 2}));
    EXPECT_EQ(runOfBody(table + "\\cf2 a").style.color, (Color{0, 0, 9}));
    EXPECT_EQ(runOfBody(table + "\\cf3 a").style.color, (Color{0, 0, 0}));
}

TEST(RtfFormatColors, AnEntryOfNothingIsTheWindowsOwnColor) {
    EXPECT_EQ(runOfBody("{\\colortbl;\\red9;}\\cf1\\cf0 a").style.color, std::nullopt);
    EXPECT_EQ(runOfBody("{\\colortbl;\\red9;}\\cf1\\cf a").style.color, std::nullopt);
}

TEST(RtfFormatColors, ANumberWithoutAnEntryIsTheWindowsOwnColor) {
    EXPECT_EQ(runOfBody("{\\colortbl;\\red9;}\\cf2 a").style.color, std::nullopt);
    EXPECT_EQ(runOfBody("{\\colortbl;\\red9;}\\cf-1 a").style.color, std::nullopt);
}

TEST(RtfFormatColors, TheFirstEntryMayBeAColor) {
    EXPECT_EQ(runOfBody("{\\colortbl\\red7\\green8\\blue9;}a").style.color, (Color{7, 8, 9}));
}

TEST(RtfFormatColors, PartsAreClamped) {
    EXPECT_EQ(runOfBody("{\\colortbl;\\red300\\green-1\\blue;}\\cf1 a").style.color,
              (Color{255, 0, 0}));
}

struct FontRow {
    std::string name;
    std::string entry;
    std::string family;
};

class RtfFormatFontEntry : public testing::TestWithParam<FontRow> {};

TEST_P(RtfFormatFontEntry, GivesTheFamily) {
    EXPECT_EQ(runOfBody("{\\fonttbl" + GetParam().entry + "}\\f3 a").style.fontFamily,
              GetParam().family);
}

INSTANTIATE_TEST_SUITE_P(
    Fonts, RtfFormatFontEntry,
    testing::Values(
        FontRow{"Group", "{\\f3\\fswiss\\fcharset0 Open Sans;}", "Open Sans"},
        FontRow{"NoGroup", "\\f2\\fnil Other;\\f3\\fswiss Sans;", "Sans"},
        FontRow{"NoSemicolon", "{\\f3 Sans}{\\f4 Other}", "Sans"},
        FontRow{"LastWithoutSemicolon", "{\\f4 Other}{\\f3 Sans}", "Sans"},
        FontRow{"TwoLines", "{\\f3 Open\n Sans;}", "Open Sans"},
        FontRow{"AlternativeName", "{\\f3\\froman{\\*\\panose 0202}Sans{\\*\\falt Arial};}",
                "Sans"},
        FontRow{"AlternativeNameBefore", "{\\f3{\\falt Arial}{\\*\\fname Old;}Sans;}", "Sans"},
        FontRow{"NameInItsCodePage", "{\\f3\\fcharset204 \\'d8\\'f0\\'e8\\'f4\\'f2;}", "Шрифт"},
        FontRow{"NameInUnicode", "{\\f3 M\\u252\\'fcller;}", "Müller"},
        FontRow{"Twice", "{\\f3 First;}{\\f3 Second;}", "Second"},
        FontRow{"Missing", "{\\f4 Other;}", ""}, FontRow{"Nameless", "{\\f3;}", ""},
        FontRow{"Member", "{\\f3 Helvetica-BoldOblique;}", "Helvetica"},
        FontRow{"MemberOfAFamilyWithHyphens", "{\\f3 A-B-Regular;}", "A-B"},
        FontRow{"HyphenInTheName", "{\\f3 X-Files;}", "X-Files"},
        FontRow{"SystemFont", "{\\f3 .SFNSText-Bold;}", ""},
        FontRow{"ForVerticalText", "{\\f3 @Gothic;}", "Gothic"},
        FontRow{"Script", "{\\f3\\fcharset238 Calibri CE;}", "Calibri"},
        FontRow{"ScriptInBrackets", "{\\f3\\fcharset177 Arial (Hebrew);}", "Arial"},
        FontRow{"Signs", "{\\f3\\fcharset2 Symbol;}", ""},
        FontRow{"LongestName", "{\\f3 " + std::string(128, 'x') + ";}", std::string(128, 'x')},
        FontRow{"TooLongAName", "{\\f3 " + std::string(129, 'x') + ";}", ""}),
    [](const auto& row) { return row.param.name; });

TEST(RtfFormatFonts, TextWithoutAFontHasTheDefaultOne) {
    const std::string table = "\\deff2{\\fonttbl{\\f1 One;}{\\f2 Two;}}";
    EXPECT_EQ(runOfBody(table + "a").style.fontFamily, "Two");
    EXPECT_EQ(runOfBody(table + "\\f1\\plain a").style.fontFamily, "Two");
    EXPECT_EQ(runOfBody("{\\fonttbl{\\f0 Zero;}}a").style.fontFamily, "");
}

TEST(RtfFormatFonts, NumbersBeyondSixteenBitsAreNoFonts) {
    EXPECT_EQ(runOfBody("{\\fonttbl{\\f32767 Last;}}\\f32767 a").style.fontFamily, "Last");
    EXPECT_EQ(runOfBody("{\\fonttbl{\\f32768 None;}}\\f32768 a").style.fontFamily, "");
    EXPECT_EQ(runOfBody("{\\fonttbl{\\f-1 None;}}\\f-1 a").style.fontFamily, "");
}

struct ParagraphRow {
    std::string name;
    std::string words;
    Paragraph paragraph;
};

class RtfFormatOfAParagraph : public testing::TestWithParam<ParagraphRow> {};

TEST_P(RtfFormatOfAParagraph, GivesTheParagraph) {
    Paragraph expected = GetParam().paragraph;
    expected.runs = {{.text = "a"}};
    const std::vector<Paragraph> paragraphs{expected};
    EXPECT_EQ(textOfBody(GetParam().words + "\na\\par").paragraphs, paragraphs);
    EXPECT_EQ(textOfBody(GetParam().words + "\na").paragraphs, paragraphs);
}

INSTANTIATE_TEST_SUITE_P(
    Paragraphs, RtfFormatOfAParagraph,
    testing::Values(
        ParagraphRow{"Natural", "\\pard", {}},
        ParagraphRow{"Left", "\\ql", {.alignment = Paragraph::Alignment::left}},
        ParagraphRow{"Right", "\\qr", {.alignment = Paragraph::Alignment::right}},
        ParagraphRow{"Center", "\\qc", {.alignment = Paragraph::Alignment::center}},
        ParagraphRow{"Justified", "\\qj", {.alignment = Paragraph::Alignment::justified}},
        ParagraphRow{"NaturalAgain", "\\ql\\qnatural", {}},
        ParagraphRow{"RightToLeft", "\\rtlpar", {.rightToLeft = true}},
        ParagraphRow{"LeftToRight", "\\rtlpar\\ltrpar", {}},
        ParagraphRow{"Hanging", "\\li720\\fi-360", {.leftIndent = 36, .firstLineIndent = -18}},
        ParagraphRow{"RightIndent", "\\ri25", {.rightIndent = 1.25}},
        ParagraphRow{"Space", "\\sb240\\sa120", {.spaceBefore = 12, .spaceAfter = 6}},
        ParagraphRow{
            "Clamped", "\\li1000000\\ri-1000000", {.leftIndent = 1584, .rightIndent = -1584}},
        ParagraphRow{"Reset", "\\qc\\rtlpar\\li9\\ri9\\fi9\\sb9\\sa9\\pard", {}},
        ParagraphRow{"OutsideItsGroup", "{\\qc\\li720}", {}}),
    [](const auto& row) { return row.param.name; });

TEST(RtfFormatParagraphs, TheFormatIsTheOneAtTheMark) {
    const StyledText text = textOfBody("{\\qc a\\par}b\\qr\\par");
    EXPECT_EQ(text.paragraphs[0].alignment, Paragraph::Alignment::center);
    EXPECT_EQ(text.paragraphs[1].alignment, Paragraph::Alignment::right);
}

TEST(RtfFormatParagraphs, AFormatLastsUntilItIsReset) {
    const StyledText text = textOfBody("\\qc a\\par b\\par\\pard c\\par");
    EXPECT_EQ(text.paragraphs[1].alignment, Paragraph::Alignment::center);
    EXPECT_EQ(text.paragraphs[2].alignment, Paragraph::Alignment::natural);
}

TEST(RtfFormatParagraphs, TheLastOneWithoutAMarkLooksAsItsTextDid) {
    EXPECT_EQ(textOfBody("{\\qc a}").paragraphs.front().alignment, Paragraph::Alignment::center);
}

}  // namespace
}  // namespace installer::test
