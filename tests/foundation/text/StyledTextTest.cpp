#include <string>

#include <gtest/gtest.h>

#include "foundation/text/StyledText.h"

namespace installer::test {
namespace {

const TextStyle bold{.bold = true};
const TextStyle italic{.italic = true};
const TextStyle plain{};

StyledText oneParagraph(std::vector<TextRun> runs) {
    return {.paragraphs = {{.alignment = Paragraph::Alignment::center, .runs = std::move(runs)}}};
}

TEST(StyledText, PlainTextGivesAParagraphForEachLine) {
    const StyledText text = StyledText::fromPlainText("one\n\nthree");
    ASSERT_EQ(text.paragraphs.size(), 3U);
    EXPECT_EQ(text.paragraphs[0], (Paragraph{.runs = {{.text = "one"}}}));
    EXPECT_EQ(text.paragraphs[1], Paragraph{});
    EXPECT_EQ(text.paragraphs[2], (Paragraph{.runs = {{.text = "three"}}}));
}

TEST(StyledText, PlainTextComesBackAsItWas) {
    for (const std::string text : {"", "nil", "a\nb", "a\n", "\n", "\n\na\n\n", "Größe 日本"}) {
        EXPECT_EQ(StyledText::fromPlainText(text).plainText(), text);
    }
}

TEST(StyledText, AnEmptyTextHasNoParagraphs) {
    EXPECT_EQ(StyledText::fromPlainText(""), StyledText{});
}

TEST(StyledText, LinesMayEndAsInFilesOfOtherSystems) {
    EXPECT_EQ(StyledText::fromPlainText("a\r\nb\r\n"), StyledText::fromPlainText("a\nb\n"));
}

TEST(StyledText, APlaceholderWithinARunIsReplacedInItsStyle) {
    const StyledText text = oneParagraph({{"see ", plain}, {"the %NAME% now", bold}});
    EXPECT_EQ(text.replacingAll("%NAME%", "Lantern"),
              oneParagraph({{"see ", plain}, {"the Lantern now", bold}}));
}

TEST(StyledText, APlaceholderThatSpansRunsTakesTheStyleOfItsFirstCharacter) {
    const StyledText text =
        oneParagraph({{"a %NA", bold}, {"M", italic}, {"E% b", plain}, {"c", italic}});
    EXPECT_TRUE(text.contains("%NAME%"));
    EXPECT_EQ(text.replacingAll("%NAME%", "Lantern"),
              oneParagraph({{"a Lantern", bold}, {" b", plain}, {"c", italic}}));
}

TEST(StyledText, ARunThatWasWhollyPartOfAPlaceholderIsGone) {
    const StyledText text = oneParagraph({{"%", bold}, {"X", plain}, {"%", italic}});
    EXPECT_EQ(text.replacingAll("%X%", "y"), oneParagraph({{"y", bold}}));
    EXPECT_EQ(text.replacingAll("%X%", ""), oneParagraph({}));
}

TEST(StyledText, EveryOccurrenceInEveryParagraphIsReplaced) {
    StyledText text = oneParagraph({{"%X%%X%", plain}, {" %X%", bold}});
    text.paragraphs.push_back({.runs = {{"and %X%", italic}}});
    StyledText expected = oneParagraph({{"yy", plain}, {" y", bold}});
    expected.paragraphs.push_back({.runs = {{"and y", italic}}});
    EXPECT_EQ(text.replacingAll("%X%", "y"), expected);
}

TEST(StyledText, WhatWasPutInIsNotSearchedAgain) {
    const StyledText text = oneParagraph({{"%X%", bold}, {"X%", plain}});
    EXPECT_EQ(text.replacingAll("%X%", "%X%").plainText(), "%X%X%");
    EXPECT_EQ(text.replacingAll("%X%", "%").plainText(), "%X%");
    EXPECT_EQ(oneParagraph({{"aaa", plain}}).replacingAll("aa", "ba").plainText(), "baa");
}

TEST(StyledText, APlaceholderDoesNotSpanParagraphs) {
    const StyledText text = StyledText::fromPlainText("a %NA\nME% b");
    EXPECT_FALSE(text.contains("%NAME%"));
    EXPECT_FALSE(text.contains("%NA\nME%"));
    EXPECT_EQ(text.replacingAll("%NAME%", "x"), text);
}

TEST(StyledText, ATextWithoutThePlaceholderStaysTheSame) {
    const StyledText text = oneParagraph({{"a", bold}, {"", plain}, {"b", bold}});
    EXPECT_FALSE(text.contains("%NAME%"));
    EXPECT_EQ(text.replacingAll("%NAME%", "x"), text);
    EXPECT_EQ(StyledText{}.replacingAll("%NAME%", "x"), StyledText{});
}

TEST(StyledText, AnEmptyPlaceholderOccursNowhere) {
    const StyledText text = oneParagraph({{"a", bold}});
    EXPECT_FALSE(text.contains(""));
    EXPECT_EQ(text.replacingAll("", "x"), text);
}

TEST(StyledText, RunsOfTheSameStyleBesideAReplacementStayApart) {
    const StyledText text = oneParagraph({{"a", bold}, {"%X%", bold}, {"b", bold}});
    EXPECT_EQ(text.replacingAll("%X%", "y"), oneParagraph({{"a", bold}, {"y", bold}, {"b", bold}}));
}

}  // namespace
}  // namespace installer::test
