#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/foundation/rtf/RtfReading.h"

namespace installer::test {
namespace {

std::string linkOf(const std::string& instruction) {
    return runOfBody("{\\field{\\*\\fldinst " + instruction + "}{\\fldrslt a}}").style.link;
}

struct LinkRow {
    std::string name;
    std::string instruction;
    std::string link;
};

class RtfLinksAddress : public testing::TestWithParam<LinkRow> {};

TEST_P(RtfLinksAddress, IsTheAddressOfTheInstruction) {
    EXPECT_EQ(linkOf(GetParam().instruction), GetParam().link);
}

INSTANTIATE_TEST_SUITE_P(
    Instructions, RtfLinksAddress,
    testing::Values(
        LinkRow{"Quoted", R"(HYPERLINK "https://a.example/b?c=d&e")", "https://a.example/b?c=d&e"},
        LinkRow{"Bare", "HYPERLINK https://a.example", "https://a.example"},
        LinkRow{"LowerCase", R"(hyperlink "x:y")", "x:y"},
        LinkRow{"BlanksAround", R"(  HYPERLINK   "x:y"  )", "x:y"},
        LinkRow{"InGroups", R"({\b {HYPER}LINK }{\ul "x:}{y" })", "x:y"},
        LinkRow{"TwoLines", "HYPERLINK \"x:\r\ny\"", "x:y"},
        LinkRow{"Place", R"(HYPERLINK "x:y" \\l "top")", "x:y#top"},
        LinkRow{"PlaceFirst", R"(HYPERLINK \\l "top" "x:y")", "x:y#top"},
        LinkRow{"PlaceInTheDocument", R"(HYPERLINK \\l "top")", ""},
        LinkRow{"Tip", R"(HYPERLINK "x:y" \\o "read \\"this\\"" \\t "_blank")", "x:y"},
        LinkRow{"TipFirst", R"(HYPERLINK \\o "tip" "x:y")", "x:y"},
        LinkRow{"NewWindow", R"(HYPERLINK \\n "x:y")", "x:y"},
        LinkRow{"Backslashes", R"(HYPERLINK "file:\\\\\\\\a\\\\b")", R"(file:\\a\b)"},
        LinkRow{"Unicode", R"(HYPERLINK "x:\u228?\'e4")", "x:ää"},
        LinkRow{"NotClosed", R"(HYPERLINK "x:y)", "x:y"},
        LinkRow{"WithoutAddress", "HYPERLINK", ""},
        LinkRow{"Longest", "HYPERLINK " + std::string(2048, 'x'), std::string(2048, 'x')},
        LinkRow{"TooLong", "HYPERLINK " + std::string(2049, 'x'), ""},
        LinkRow{"OtherField", "PAGE", ""}, LinkRow{"OtherFieldWithText", R"(REF "x:y")", ""},
        LinkRow{"Nothing", "", ""}),
    [](const auto& row) { return row.param.name; });

TEST(RtfLinks, OnlyTheResultIsTextAndOnlyItIsALink) {
    const StyledText text =
        textOfBody("a {\\field{\\*\\fldinst{HYPERLINK \"x:y\"}}{\\fldrslt{\\ul b}{\\b  c}}} d");
    EXPECT_EQ(text.paragraphs.front().runs,
              (std::vector<TextRun>{{"a ", {}},
                                    {"b", {.underline = true, .link = "x:y"}},
                                    {" c", {.bold = true, .link = "x:y"}},
                                    {" d", {}}}));
}

TEST(RtfLinks, TheResultStaysALinkWhenItsLookIsReset) {
    EXPECT_EQ(runOfBody("{\\field{\\*\\fldinst HYPERLINK \"x:y\"}{\\fldrslt\\b\\plain a}}"),
              (TextRun{"a", {.link = "x:y"}}));
}

TEST(RtfLinks, AnInstructionNeedNotBeOptional) {
    EXPECT_EQ(runOfBody("{\\field{\\fldinst HYPERLINK \"x:y\"}{\\fldrslt a}}").style.link, "x:y");
}

TEST(RtfLinks, OtherFieldsShowTheirResult) {
    EXPECT_EQ(plainTextOfBody("{\\field{\\*\\fldinst DATE}{\\fldrslt today}}"), "today");
    EXPECT_EQ(plainTextOfBody("{\\field{\\*\\fldinst HYPERLINK \"x:y\"}}"), "");
    EXPECT_EQ(plainTextOfBody("{\\*\\fldinst HYPERLINK}{\\fldrslt a}"), "a");
}

TEST(RtfLinks, AFieldWithinALinkKeepsTheLinkUnlessItHasItsOwn) {
    const std::string begin = "{\\field{\\*\\fldinst HYPERLINK \"x:y\"}{\\fldrslt ";
    EXPECT_EQ(runOfBody(begin + "a{\\field{\\*\\fldinst DATE}{\\fldrslt b}}c}}"),
              (TextRun{"abc", {.link = "x:y"}}));
    const StyledText text =
        textOfBody(begin + "a{\\field{\\*\\fldinst HYPERLINK \"u:v\"}{\\fldrslt b}}c}}");
    EXPECT_EQ(text.paragraphs.front().runs,
              (std::vector<TextRun>{
                  {"a", {.link = "x:y"}}, {"b", {.link = "u:v"}}, {"c", {.link = "x:y"}}}));
}

TEST(RtfLinks, TwoLinksInARowStayApart) {
    const std::string field = "{\\field{\\*\\fldinst HYPERLINK \"x:1\"}{\\fldrslt a}}";
    const StyledText text =
        textOfBody(field + "{\\field{\\*\\fldinst HYPERLINK \"x:2\"}{\\fldrslt b}}");
    EXPECT_EQ(text.paragraphs.front().runs,
              (std::vector<TextRun>{{"a", {.link = "x:1"}}, {"b", {.link = "x:2"}}}));
}

}  // namespace
}  // namespace installer::test
