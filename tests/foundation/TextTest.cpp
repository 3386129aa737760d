#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/Text.h"

namespace installer {
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

class IllFormedText : public testing::TestWithParam<Bytes> {};

TEST_P(IllFormedText, IsNotUtf8) {
    EXPECT_FALSE(isUtf8(GetParam().bytes));
    EXPECT_FALSE(isUtf8("a" + GetParam().bytes + "b"));
    EXPECT_FALSE(decodedUtf8(GetParam().bytes));
}

TEST_P(IllFormedText, SurvivesEveryOperationByteForByte) {
    const std::string text = "a" + GetParam().bytes + "b";
    EXPECT_EQ(characters(text, 0), text);
    EXPECT_EQ(characters(text, 1), GetParam().bytes + "b");
    EXPECT_EQ(characters(text, 1, GetParam().bytes.size()), GetParam().bytes);
    EXPECT_EQ(trimmed(" " + text + " "), text);
    EXPECT_EQ(trimmed(" " + GetParam().bytes + " "), GetParam().bytes);
    EXPECT_EQ(replacingAll(text, "a", "é"), "é" + GetParam().bytes + "b");
    EXPECT_THAT(split(text + "/c", '/'), ElementsAre(text, "c"));
    EXPECT_TRUE(contains(text, GetParam().bytes));
    EXPECT_EQ(integerValue(GetParam().bytes + "7"), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Bytes, IllFormedText,
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

class UnicodeWhiteSpace : public testing::TestWithParam<std::string> {};

TEST_P(UnicodeWhiteSpace, IsTrimmedFromBothEndsAndKeptInside) {
    const std::string space = GetParam();
    EXPECT_EQ(trimmed(space + space + "a" + space + "b" + space), "a" + space + "b");
    EXPECT_EQ(trimmed(space), "");
}

TEST_P(UnicodeWhiteSpace, MayPrecedeANumber) {
    EXPECT_EQ(integerValue(GetParam() + "-42"), -42);
}

INSTANTIATE_TEST_SUITE_P(Spaces, UnicodeWhiteSpace,
                         testing::Values("\t", " ", "\u00A0", "\u1680", "\u2000", "\u2001",
                                         "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007",
                                         "\u2008", "\u2009", "\u200A", "\u202F", "\u205F",
                                         "\u3000"));

class NotTrimmed : public testing::TestWithParam<std::string> {};

TEST_P(NotTrimmed, StaysAtBothEnds) {
    const std::string text = GetParam() + "a" + GetParam();
    EXPECT_EQ(trimmed(" " + text + " "), text);
}

INSTANTIATE_TEST_SUITE_P(LineEndsAndNeighbours, NotTrimmed,
                         testing::Values("\n", "\r", "\v", "\f", "\xC2\x85", "\u2028", "\u2029",
                                         "\u200B", "\u1FFF", "\uFEFF", "\x1F", "\xA0",
                                         std::string("\0", 1)));

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
    std::string text;
    std::int32_t value;
};

class IntegerValue : public testing::TestWithParam<Number> {};

TEST_P(IntegerValue, OfATextThatBeginsWithANumberOrDoesNot) {
    EXPECT_EQ(integerValue(GetParam().text), GetParam().value) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Texts, IntegerValue,
                         testing::Values(Number{"", 0}, Number{"0", 0}, Number{"12", 12},
                                         Number{"+12", 12}, Number{"-12", -12}, Number{"007", 7},
                                         Number{"-0", 0}, Number{"2015.5", 2015},
                                         Number{"12 and more", 12}, Number{"v12", 0},
                                         Number{"-", 0}, Number{"+", 0}, Number{"--1", 0},
                                         Number{"+-1", 0}, Number{"- 1", 0}, Number{"\n\r\n 5", 5},
                                         Number{" \t-5\n", -5}, Number{"   ", 0}, Number{"0x10", 0},
                                         Number{"1e3", 1}, Number{"\u0663", 0}));

INSTANTIATE_TEST_SUITE_P(
    LimitsOf32Bits, IntegerValue,
    testing::Values(Number{"2147483647", 2147483647}, Number{"2147483648", 2147483647},
                    Number{"+4294967296", 2147483647}, Number{"-2147483647", -2147483647},
                    Number{"-2147483648", std::numeric_limits<std::int32_t>::min()},
                    Number{"-2147483649", std::numeric_limits<std::int32_t>::min()},
                    Number{"9223372036854775808", 2147483647},
                    Number{std::string(5000, '9'), 2147483647},
                    Number{"-" + std::string(5000, '9'), std::numeric_limits<std::int32_t>::min()},
                    Number{std::string(5000, '0') + "8", 8}));

TEST(Text, ComparingWithoutCaseIsAboutAsciiLettersOnly) {
    EXPECT_TRUE(equalIgnoringCase("PT_br", "pt_BR"));
    EXPECT_TRUE(equalIgnoringCase("", ""));
    EXPECT_FALSE(equalIgnoringCase("pt", "pt-BR"));
    EXPECT_FALSE(equalIgnoringCase("É", "é"));
    EXPECT_FALSE(equalIgnoringCase("[", "{"));
    EXPECT_FALSE(equalIgnoringCase("@", "`"));
}

}  // namespace
}  // namespace installer
