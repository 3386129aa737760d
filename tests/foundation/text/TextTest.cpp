#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/text/Text.h"

namespace installer::test {
namespace {

using testing::ElementsAre;

// Two bytes, three bytes and four bytes long.
constexpr const char* threeLetters = "é日𝄞";

TEST(Text, WellFormedTextOfEveryLengthIsUtf8) {
    EXPECT_TRUE(isUtf8(""));
    EXPECT_TRUE(isUtf8("plain"));
    EXPECT_TRUE(isUtf8(threeLetters));
    EXPECT_TRUE(isUtf8(std::string("a\0b", 3)));
    EXPECT_TRUE(isUtf8("\xED\x9F\xBF\xEE\x80\x80"));  // both neighbours of the surrogates
    EXPECT_TRUE(isUtf8("\xF4\x8F\xBF\xBF"));          // the last code point
    EXPECT_TRUE(isUtf8("\xEF\xBB\xBFwith a mark"));
}

struct Bytes {
    std::string name;
    std::string bytes;
};

class TextThatIsIllFormed : public testing::TestWithParam<Bytes> {};

TEST_P(TextThatIsIllFormed, IsNotUtf8) {
    EXPECT_FALSE(isUtf8(GetParam().bytes));
    EXPECT_FALSE(isUtf8("a" + GetParam().bytes + "b"));
    EXPECT_FALSE(decodedUtf8(GetParam().bytes));
}

TEST_P(TextThatIsIllFormed, SurvivesEveryOperationByteForByte) {
    const std::string text = "a" + GetParam().bytes + "b";
    EXPECT_EQ(characters(text, 0), text);
    EXPECT_EQ(characters(text, 1), GetParam().bytes + "b");
    EXPECT_EQ(characters(text, 1, GetParam().bytes.size()), GetParam().bytes);
    EXPECT_EQ(trimmed(" " + text + " "), text);
    EXPECT_EQ(trimmed(" " + GetParam().bytes + " "), GetParam().bytes);
    EXPECT_EQ(replacingAll(text, "a", "é"), "é" + GetParam().bytes + "b");
    EXPECT_EQ(withoutWhiteSpace(" " + text + " "), text);
    EXPECT_EQ(lowerCased(text), text);
    EXPECT_THAT(split(text + "/c", '/'), ElementsAre(text, "c"));
    EXPECT_TRUE(contains(text, GetParam().bytes));
    EXPECT_EQ(integerValue(GetParam().bytes + "7"), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Bytes, TextThatIsIllFormed,
    testing::Values(Bytes{"LoneContinuation", "\x80"}, Bytes{"NeverUsed", "\xFF"},
                    Bytes{"CutTwo", "\xC3"}, Bytes{"CutThree", "\xE6\x97"},
                    Bytes{"CutFour", "\xF0\x9D\x84"}, Bytes{"OverlongTwo", "\xC0\xAF"},
                    Bytes{"OverlongThree", "\xE0\x80\xAF"},
                    Bytes{"OverlongFour", "\xF0\x80\x80\xAF"}, Bytes{"Surrogate", "\xED\xA0\x80"},
                    Bytes{"BeyondTheLast", "\xF4\x90\x80\x80"},
                    Bytes{"FiveBytes", "\xF8\x88\x80\x80\x80"}),
    [](const auto& row) { return row.param.name; });

TEST(Text, DecodingGivesWellFormedTextAsItIs) {
    EXPECT_EQ(decodedUtf8(threeLetters), threeLetters);
    EXPECT_EQ(decodedUtf8(""), "");
}

TEST(Text, CharactersAreCountedNotBytes) {
    EXPECT_EQ(characters(threeLetters, 1), "日𝄞");
    EXPECT_EQ(characters(threeLetters, 1, 1), "日");
    EXPECT_EQ(characters(threeLetters, 0, 3), threeLetters);
}

TEST(Text, BytesThatAreNoTextCountAsOneCharacterEach) {
    EXPECT_EQ(characters("\xE6\x97q\xFFé", 2), "q\xFFé");
    EXPECT_EQ(characters("\xE6\x97q\xFFé", 3, 2), "\xFFé");
}

TEST(Text, CharactersFromTheVeryEndAreTheEmptyText) {
    EXPECT_EQ(characters(threeLetters, 3), "");
    EXPECT_EQ(characters(threeLetters, 3, 0), "");
    EXPECT_EQ(characters("", 0), "");
}

TEST(Text, CharactersBeyondTheEndAreNone) {
    constexpr auto huge = std::numeric_limits<std::size_t>::max();
    EXPECT_FALSE(characters(threeLetters, 4));
    EXPECT_FALSE(characters(threeLetters, 2, 2));
    EXPECT_FALSE(characters(threeLetters, 4, 0));
    EXPECT_FALSE(characters(threeLetters, huge));
    EXPECT_FALSE(characters(threeLetters, 1, huge));
    EXPECT_FALSE(characters(threeLetters, huge, huge));
}

TEST(Text, ContainsIsAboutLetterCaseToo) {
    EXPECT_TRUE(contains("Adobe Photoshop CC", "Photoshop"));
    EXPECT_FALSE(contains("Adobe photoshop CC", "Photoshop"));
    EXPECT_TRUE(contains("é", "é"));
    EXPECT_FALSE(contains("short", "a longer part"));
}

TEST(Text, AnEmptyPartOccursNowhere) {
    EXPECT_FALSE(contains("text", ""));
    EXPECT_FALSE(contains("", ""));
    EXPECT_EQ(replacingAll("text", "", "x"), "text");
}

TEST(Text, AByteOfACharacterDoesNotOccurInIt) {
    EXPECT_FALSE(contains("日", "\xE6"));
    EXPECT_FALSE(contains("日", "\x97"));
    EXPECT_FALSE(contains("日", "\xE6\x97"));
    EXPECT_EQ(replacingAll("日\x97", "\x97", "!"), "日!");
}

TEST(Text, ReplacesEveryOccurrence) {
    EXPECT_EQ(replacingAll("a b c", " ", ""), "abc");
    EXPECT_EQ(replacingAll(" a ", " ", "--"), "--a--");
    EXPECT_EQ(replacingAll("日本日", "日", "x"), "x本x");
    EXPECT_EQ(replacingAll("", "a", "b"), "");
    EXPECT_EQ(replacingAll("nothing", "x", "y"), "nothing");
}

TEST(Text, ReplacingGoesFromLeftToRight) {
    EXPECT_EQ(replacingAll("aaa", "aa", "b"), "ba");
}

TEST(Text, WhatWasPutInIsNotLookedAtAgain) {
    EXPECT_EQ(replacingAll("aa", "a", "aa"), "aaaa");
    EXPECT_EQ(replacingAll("aab", "ab", "b"), "ab");
}

class TextUnicodeWhiteSpace : public testing::TestWithParam<Bytes> {};

TEST_P(TextUnicodeWhiteSpace, IsTrimmedFromBothEndsAndKeptInside) {
    const std::string space = GetParam().bytes;
    EXPECT_EQ(trimmed(space + space + "a" + space + "b" + space), "a" + space + "b");
    EXPECT_EQ(trimmed(space), "");
}

TEST_P(TextUnicodeWhiteSpace, IsTakenOutWhereverItStands) {
    const std::string space = GetParam().bytes;
    EXPECT_EQ(withoutWhiteSpace(space + "日" + space + space + "b" + space), "日b");
}

TEST_P(TextUnicodeWhiteSpace, MayPrecedeANumber) {
    EXPECT_EQ(integerValue(GetParam().bytes + "-42"), -42);
}

INSTANTIATE_TEST_SUITE_P(
    Spaces, TextUnicodeWhiteSpace,
    testing::Values(Bytes{"Tab", "\t"}, Bytes{"Space", " "}, Bytes{"U00A0", "\u00A0"},
                    Bytes{"U1680", "\u1680"}, Bytes{"U2000", "\u2000"}, Bytes{"U2001", "\u2001"},
                    Bytes{"U2002", "\u2002"}, Bytes{"U2003", "\u2003"}, Bytes{"U2004", "\u2004"},
                    Bytes{"U2005", "\u2005"}, Bytes{"U2006", "\u2006"}, Bytes{"U2007", "\u2007"},
                    Bytes{"U2008", "\u2008"}, Bytes{"U2009", "\u2009"}, Bytes{"U200A", "\u200A"},
                    Bytes{"U202F", "\u202F"}, Bytes{"U205F", "\u205F"}, Bytes{"U3000", "\u3000"}),
    [](const auto& row) { return row.param.name; });

class TextCharacterThatIsNotTrimmed : public testing::TestWithParam<Bytes> {};

TEST_P(TextCharacterThatIsNotTrimmed, StaysAtBothEnds) {
    const std::string text = GetParam().bytes + "a" + GetParam().bytes;
    EXPECT_EQ(trimmed(" " + text + " "), text);
}

TEST_P(TextCharacterThatIsNotTrimmed, StaysWhenWhiteSpaceIsTakenOut) {
    const std::string text = GetParam().bytes + "a" + GetParam().bytes;
    EXPECT_EQ(withoutWhiteSpace(" " + text + " "), text);
}

INSTANTIATE_TEST_SUITE_P(LineEndsAndNeighbours, TextCharacterThatIsNotTrimmed,
                         testing::Values(Bytes{"LineFeed", "\n"}, Bytes{"CarriageReturn", "\r"},
                                         Bytes{"VerticalTab", "\v"}, Bytes{"FormFeed", "\f"},
                                         Bytes{"U0085", "\xC2\x85"}, Bytes{"U2028", "\u2028"},
                                         Bytes{"U2029", "\u2029"}, Bytes{"U200B", "\u200B"},
                                         Bytes{"U1FFF", "\u1FFF"}, Bytes{"UFEFF", "\uFEFF"},
                                         Bytes{"U001F", "\x1F"}, Bytes{"LoneByteA0", "\xA0"},
                                         Bytes{"Nul", std::string("\0", 1)}),
                         [](const auto& row) { return row.param.name; });

TEST(Text, TrimmingNothingGivesNothing) {
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed(" \t\u3000 "), "");
}

TEST(Text, SplitGivesThePiecesBetweenSeparators) {
    EXPECT_THAT(split("a/b/c", '/'), ElementsAre("a", "b", "c"));
    EXPECT_THAT(split("日/本", '/'), ElementsAre("日", "本"));
}

TEST(Text, SplitKeepsEmptyPieces) {
    EXPECT_THAT(split("", '/'), ElementsAre(""));
    EXPECT_THAT(split("/", '/'), ElementsAre("", ""));
    EXPECT_THAT(split("a//b/", '/'), ElementsAre("a", "", "b", ""));
}

struct Number {
    std::string name;
    std::string text;
    std::int32_t value;
};

class TextIntegerValue : public testing::TestWithParam<Number> {};

TEST_P(TextIntegerValue, IsTheNumberAtTheStartOfTheText) {
    EXPECT_EQ(integerValue(GetParam().text), GetParam().value) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, TextIntegerValue,
    testing::Values(Number{"Empty", "", 0}, Number{"Zero", "0", 0}, Number{"Twelve", "12", 12},
                    Number{"PlusTwelve", "+12", 12}, Number{"MinusTwelve", "-12", -12},
                    Number{"ZerosBefore", "007", 7}, Number{"MinusZero", "-0", 0},
                    Number{"WithFraction", "2015.5", 2015}, Number{"MoreAfter", "12 and more", 12},
                    Number{"LetterBefore", "v12", 0}, Number{"MinusAlone", "-", 0},
                    Number{"PlusAlone", "+", 0}, Number{"TwoMinuses", "--1", 0},
                    Number{"PlusMinus", "+-1", 0}, Number{"SpaceAfterMinus", "- 1", 0},
                    Number{"LineEndsBefore", "\n\r\n 5", 5},
                    Number{"TabBeforeLineEndAfter", " \t-5\n", -5}, Number{"SpacesAlone", "   ", 0},
                    Number{"Hexadecimal", "0x10", 0}, Number{"Exponent", "1e3", 1},
                    Number{"ArabicDigit", "\u0663", 0}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    LimitsOf32Bits, TextIntegerValue,
    testing::Values(Number{"Greatest", "2147483647", 2147483647},
                    Number{"GreatestPlusOne", "2147483648", 2147483647},
                    Number{"TwoToThe32", "+4294967296", 2147483647},
                    Number{"MinusGreatest", "-2147483647", -2147483647},
                    Number{"Smallest", "-2147483648", std::numeric_limits<std::int32_t>::min()},
                    Number{"SmallestMinusOne", "-2147483649",
                           std::numeric_limits<std::int32_t>::min()},
                    Number{"TwoToThe63", "9223372036854775808", 2147483647},
                    Number{"FiveThousandDigits", std::string(5000, '9'), 2147483647},
                    Number{"MinusFiveThousandDigits", "-" + std::string(5000, '9'),
                           std::numeric_limits<std::int32_t>::min()},
                    Number{"FiveThousandZerosBefore", std::string(5000, '0') + "8", 8}),
    [](const auto& row) { return row.param.name; });

TEST(Text, ComparingWithoutCaseIsAboutAsciiLettersOnly) {
    EXPECT_TRUE(equalIgnoringCase("PT_br", "pt_BR"));
    EXPECT_TRUE(equalIgnoringCase("", ""));
    EXPECT_FALSE(equalIgnoringCase("pt", "pt-BR"));
    EXPECT_FALSE(equalIgnoringCase("É", "é"));
    EXPECT_FALSE(equalIgnoringCase("[", "{"));
    EXPECT_FALSE(equalIgnoringCase("@", "`"));
}

}  // namespace
}  // namespace installer::test
