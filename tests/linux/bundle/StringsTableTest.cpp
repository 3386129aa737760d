#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux/bundle/StringsTable.h"

namespace installer::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

std::vector<std::size_t> problemLines(const StringsTable& table) {
    std::vector<std::size_t> lines;
    for (const auto& problem : table.problems) lines.push_back(problem.line);
    return lines;
}

std::string utf16(std::u16string_view text, bool bigEndian) {
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8);
        const char low = static_cast<char>(unit & 0xFF);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

TEST(StringsTable, ReadsPairsBetweenCommentsOfBothKinds) {
    const auto table = parseStringsTable(
        "/* The first\n \"not\" = \"this\"; */\n"
        "\"a\" = \"one\"; // and \"not\" = \"that\";\n"
        "\"b\"/**/=/* here */\"two\"\n;");
    EXPECT_THAT(table.entries, ElementsAre(Pair("a", "one"), Pair("b", "two")));
    EXPECT_THAT(table.problems, IsEmpty());
}

TEST(StringsTable, ReadsTextsWithoutQuotes) {
    const auto table = parseStringsTable("company_name = Quarrytone;help-url.1=http:/x;a=b//c\n;");
    EXPECT_THAT(table.entries, ElementsAre(Pair("a", "b"), Pair("company_name", "Quarrytone"),
                                           Pair("help-url.1", "http:/x")));
    EXPECT_THAT(table.problems, IsEmpty());
}

TEST(StringsTable, ACommentMarkInsideQuotesIsText) {
    const auto table = parseStringsTable(R"("url" = "https://example.com/*x*/";)");
    EXPECT_THAT(table.entries, ElementsAre(Pair("url", "https://example.com/*x*/")));
}

TEST(StringsTable, TheLastOfTwoEqualKeysCounts) {
    EXPECT_THAT(parseStringsTable("a = one; a = two;").entries, ElementsAre(Pair("a", "two")));
}

TEST(StringsTable, AnEmptyTextIsAText) {
    EXPECT_THAT(parseStringsTable(R"("a" = "";)").entries, ElementsAre(Pair("a", "")));
}

TEST(StringsTable, AnEmptyFileHasNoTextsAndNoProblems) {
    for (const char* text : {"", " \n", "// only a comment", "\xEF\xBB\xBF"}) {
        const auto table = parseStringsTable(text);
        EXPECT_THAT(table.entries, IsEmpty());
        EXPECT_THAT(table.problems, IsEmpty());
    }
}

struct EscapeRow {
    const char* name;
    std::string written;
    std::string text;
};

class StringsTableEscape : public testing::TestWithParam<EscapeRow> {};

TEST_P(StringsTableEscape, GivesItsCharacter) {
    const auto table = parseStringsTable("\"a\" = \"" + GetParam().written + "\";");
    EXPECT_THAT(table.entries, ElementsAre(Pair("a", GetParam().text)));
    EXPECT_THAT(table.problems, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Escapes, StringsTableEscape,
                         testing::Values(EscapeRow{"Quote", R"(say \"hi\")", "say \"hi\""},
                                         EscapeRow{"Backslash", R"(a\\n)", "a\\n"},
                                         EscapeRow{"NewlineTabReturn", R"(\n\t\r)", "\n\t\r"},
                                         EscapeRow{"UpperCaseU", R"(Gr\U00fc\U00DFe)",
                                                   "Gr\xC3\xBC\xC3\x9F"
                                                   "e"},
                                         EscapeRow{"LowerCaseU", R"(\u65e5)", "\xE6\x97\xA5"},
                                         EscapeRow{"SurrogatePair", R"(\UD83D\ude42)",
                                                   "\xF0\x9F\x99\x82"},
                                         EscapeRow{"Octal", R"(\101\12\0601)", "A\n01"},
                                         EscapeRow{"OctalLatin", R"(\374)", "\xC3\xBC"},
                                         EscapeRow{"UnknownLetter", R"(\q\')", "q'"},
                                         EscapeRow{"LineEnd", "a\\\nb", "a\nb"}),
                         [](const auto& row) { return row.param.name; });

TEST(StringsTable, EscapesThatGiveNoCharacterAreReplacedAndReported) {
    const auto table = parseStringsTable("a = \"x\\0y\";\nb = \"\\UD83Dz\";\nc = \"\\Uxyz\";");
    EXPECT_THAT(table.entries, ElementsAre(Pair("a", "x\xEF\xBF\xBDy"), Pair("b", "\xEF\xBF\xBDz"),
                                           Pair("c", "\xEF\xBF\xBDxyz")));
    EXPECT_THAT(problemLines(table), ElementsAre(1, 2, 3));
}

TEST(StringsTable, ReadsUtf8WithAMark) {
    EXPECT_THAT(parseStringsTable("\xEF\xBB\xBF\"\xC3\xA4\" = \"\xC3\xBC\";").entries,
                ElementsAre(Pair("\xC3\xA4", "\xC3\xBC")));
}

TEST(StringsTable, ReadsUtf16OfBothByteOrders) {
    for (const bool bigEndian : {false, true}) {
        const auto table =
            parseStringsTable(utf16(u"\"a\" = \"gr\u00FC\u00DFe \U0001F642\";\r\n", bigEndian));
        EXPECT_THAT(table.entries, ElementsAre(Pair("a",
                                                    "gr\xC3\xBC\xC3\x9F"
                                                    "e \xF0\x9F\x99\x82")));
        EXPECT_THAT(table.problems, IsEmpty());
    }
}

TEST(StringsTable, Utf16ThatIsCutOrHasLoneSurrogatesIsReadAsFarAsItGoes) {
    std::string bytes = utf16(u"a = \"\xD83D!\";\nb = c;", false);
    bytes += 'x';
    const auto table = parseStringsTable(bytes);
    EXPECT_THAT(table.entries, ElementsAre(Pair("a", "\xEF\xBF\xBD!"), Pair("b", "c")));
    EXPECT_THAT(problemLines(table), ElementsAre(1, 2, 2));
}

TEST(StringsTable, BytesThatAreNoTextAreReplacedAndReportedOncePerLine) {
    const auto table =
        parseStringsTable(std::string("a = \"caf\xE9 \xFF\";\nb = good;\nc = \"x\0y\";", 34));
    EXPECT_THAT(table.entries, ElementsAre(Pair("a", "caf\xEF\xBF\xBD \xEF\xBF\xBD"),
                                           Pair("b", "good"), Pair("c", "x\xEF\xBF\xBDy")));
    EXPECT_THAT(problemLines(table), ElementsAre(1, 3));
}

TEST(StringsTable, CountsLinesWhateverEndsThem) {
    EXPECT_THAT(problemLines(parseStringsTable("a = b;\r\n\r\n= c;")), ElementsAre(3));
    EXPECT_THAT(problemLines(parseStringsTable("a = b;\r\r= c;")), ElementsAre(3));
    EXPECT_THAT(problemLines(parseStringsTable("a = b;\n\n= c;")), ElementsAre(3));
}

struct BrokenTableRow {
    const char* name;
    const char* line;  ///< the second of three lines
    std::vector<std::pair<std::string, std::string>> alsoRead;
};

class StringsTableBroken : public testing::TestWithParam<BrokenTableRow> {};

TEST_P(StringsTableBroken, IsReportedWithItsLineAndTheRestIsRead) {
    const auto table = parseStringsTable("\"first\" = \"1\";\n" + std::string(GetParam().line) +
                                         "\n\"last\" = \"3\";\n");
    std::map<std::string, std::string> expected = {{"first", "1"}, {"last", "3"}};
    for (const auto& [key, value] : GetParam().alsoRead) expected[key] = value;
    EXPECT_EQ(table.entries, expected);
    ASSERT_FALSE(table.problems.empty());
    EXPECT_EQ(table.problems.front().line, 2u);
    EXPECT_FALSE(table.problems.front().message.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Lines, StringsTableBroken,
    testing::Values(
        BrokenTableRow{"NoSemicolon", "\"a\" = \"2\"", {{"a", "2"}}},
        BrokenTableRow{"NoEqualsSign", "\"a\" \"2\";", {}}, BrokenTableRow{"KeyAlone", "\"a\"", {}},
        BrokenTableRow{"NoValue", "\"a\" = ;", {}}, BrokenTableRow{"ValueCutOff", "\"a\" =", {}},
        BrokenTableRow{"NoKey", "= \"2\";", {}},
        BrokenTableRow{"NoClosingQuoteOfTheValue", "\"a\" = \"2;", {}},
        BrokenTableRow{"NoClosingQuoteOfTheKey", "\"a = \"2\";", {}},
        BrokenTableRow{"NoOpeningQuote", "a\" = \"2\";", {}},
        BrokenTableRow{"OnlyAQuote", "\"", {}}, BrokenTableRow{"StrayText", "{ dictionary }", {}},
        BrokenTableRow{"NonAsciiWithoutQuotes", "\xC3\xA4 = 2;", {}},
        BrokenTableRow{"SemicolonInsideTheRest", "\"a\" + \"x;y\"; b = 2;", {{"b", "2"}}},
        BrokenTableRow{"GoodPairAfterABadOne", "= 1; b = 2;", {{"b", "2"}}}),
    [](const auto& row) { return row.param.name; });

TEST(StringsTable, ACommentThatDoesNotEndIsReportedWhereItBegins) {
    const auto table = parseStringsTable("a = b;\n/* never\nc = d;");
    EXPECT_THAT(table.entries, ElementsAre(Pair("a", "b")));
    ASSERT_THAT(table.problems, SizeIs(1));
    EXPECT_EQ(table.problems[0].line, 2u);
    EXPECT_THAT(table.problems[0].message, HasSubstr("comment"));
}

TEST(StringsTable, AFileThatEndsInTheMiddleOfAPairKeepsWhatCameBefore) {
    for (const char* end : {"b", "b =", "b = \"", "b = \"x\\", "\"b", "/", "/*", "\\"}) {
        const auto table = parseStringsTable(std::string("a = 1;\n") + end);
        EXPECT_THAT(table.entries, ElementsAre(Pair("a", "1"))) << end;
        EXPECT_THAT(problemLines(table), ElementsAre(2)) << end;
    }
}

TEST(StringsTable, ALongKeyIsCutInMessagesBetweenTwoCharacters) {
    std::string key = "x";
    for (int index = 0; index < 1000; ++index) key += "\xC3\xA4";
    const auto table = parseStringsTable("\"" + key + "\" \"no\";");
    ASSERT_THAT(table.problems, SizeIs(1));
    EXPECT_LT(table.problems[0].message.size(), 200u);
    EXPECT_THAT(table.problems[0].message, HasSubstr("\xC3\xA4...\""));
}

TEST(StringsTable, KnowsTheLineOfEachKey) {
    const auto table = parseStringsTable("/* a\n note */ a = b;\n\"c\" =\n\"d\";\n");
    EXPECT_THAT(table.lines, ElementsAre(Pair("a", 2u), Pair("c", 3u)));
}

TEST(StringsTable, RemarksOnWhatItReadsAllTheSame) {
    const auto table = parseStringsTable("a = b;\na = c;\nd = \"\\e\";\nf = \"\\\"\\'\\\\\";\n");
    EXPECT_THAT(table.problems, IsEmpty());
    ASSERT_THAT(table.remarks, SizeIs(2));
    EXPECT_EQ(table.remarks[0].line, 2u);
    EXPECT_EQ(table.remarks[0].mistake, StringsTable::Mistake::repeatedKey);
    EXPECT_EQ(table.remarks[1].line, 3u);
    EXPECT_EQ(table.remarks[1].mistake, StringsTable::Mistake::unknownEscape);
    EXPECT_THAT(table.lines, Contains(Pair("a", 2u)));
}

TEST(StringsTable, TellsAMissingQuoteFromAMissingSemicolon) {
    const auto quote = parseStringsTable("a = \"b;\nc = \"d\";\n");
    ASSERT_FALSE(quote.problems.empty());
    EXPECT_EQ(quote.problems[0].mistake, StringsTable::Mistake::textWithoutClosingQuote);
    EXPECT_EQ(quote.problems[0].line, 1u);
    const auto semicolon = parseStringsTable("a = \"b\"\nc = \"d\";\n");
    ASSERT_THAT(semicolon.problems, SizeIs(1));
    EXPECT_EQ(semicolon.problems[0].mistake, StringsTable::Mistake::missingSemicolon);
}

TEST(StringsTable, ReportsAtMostSoManyProblems) {
    std::string text;
    for (int line = 0; line < 1000; ++line) text += "= ;\n";
    EXPECT_EQ(parseStringsTable(text + "a = b;").problems.size(), StringsTable::maximumProblems);
    EXPECT_THAT(parseStringsTable(text + "a = b;").entries, ElementsAre(Pair("a", "b")));
    EXPECT_EQ(parseStringsTable(std::string(100'000, '\xFF')).problems.size(), 2u);
}

TEST(StringsTable, TextThatInvitesReadingItAgainAndAgainIsReadInBoundedTime) {
    // Each line opens a text that ends on the next one, followed by one endless comment.
    std::string text;
    for (int line = 0; line < 200'000; ++line) text += "\" /*\n";
    const auto table = parseStringsTable(text + "*/");
    EXPECT_THAT(table.entries, IsEmpty());
    EXPECT_FALSE(table.problems.empty());
}

}  // namespace
}  // namespace installer::test
