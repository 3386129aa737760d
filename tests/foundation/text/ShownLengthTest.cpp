#include <string>

#include <gtest/gtest.h>

#include "foundation/rtf/RtfReader.h"
#include "foundation/text/ShownLength.h"
#include "foundation/values/Utf8.h"

namespace installer {
namespace {

constexpr std::size_t mostBytes = ShownLength::mostBytes;
constexpr std::size_t mostPieces = ShownLength::mostPieces;

std::string repeated(const std::string& piece, std::size_t times) {
    std::string text;
    for (std::size_t time = 0; time < times; ++time) text += piece;
    return text;
}

StyledText page(const std::string& contents) {
    const auto read = readRtf("{\\rtf1\\ansi " + contents + "}");
    return std::get<StyledText>(read);
}

std::size_t pieces(const StyledText& text) {
    std::size_t count = text.paragraphs.size();
    for (const Paragraph& paragraph : text.paragraphs) count += paragraph.runs.size();
    return count;
}

TEST(ShownLength, ATextUpToTheLimitIsShownWhole) {
    const std::string text = repeated("x", mostBytes - 1) + "\n";
    EXPECT_EQ(shownPart(text), text);
    EXPECT_EQ(shownPart(""), "");
}

TEST(ShownLength, ALongerTextIsCutBehindAWholeCharacter) {
    const std::string text = repeated("\u8A31", mostBytes);
    const std::string_view shown = shownPart(text);
    EXPECT_LE(shown.size(), mostBytes);
    EXPECT_GT(shown.size(), mostBytes - 3);
    EXPECT_TRUE(isValidUtf8(shown));
}

TEST(ShownLength, ATextOfTooManyLinesIsCutBehindOne) {
    const std::string text = repeated("a\n", mostPieces / 2);
    EXPECT_EQ(shownPart(text), text);
    EXPECT_EQ(shownPart(text + "b"), text);
}

TEST(ShownLength, APageUpToTheLimitIsShownWhole) {
    const StyledText text = page(repeated("x", mostBytes - 1) + "\\par");
    EXPECT_FALSE(text.isCut);
    EXPECT_EQ(text.plainText().size(), mostBytes - 1);
}

TEST(ShownLength, ALongerPageIsCut) {
    const StyledText text = page("{\\b Terms}\\par " + repeated("x", mostBytes));
    EXPECT_TRUE(text.isCut);
    EXPECT_EQ(text.paragraphs.size(), 2U);
    EXPECT_EQ(text.plainText().size(), mostBytes);
}

TEST(ShownLength, APageOfTooManyParagraphsOrStylesIsCut) {
    for (const char* piece : {"\\par ", "\\b T\\b0 h", "Terms\\par ", "\\page x"}) {
        const StyledText text = page(repeated(piece, mostPieces + 1));
        EXPECT_TRUE(text.isCut) << piece;
        EXPECT_LE(pieces(text), mostPieces + 1) << piece;
    }
}

TEST(ShownLength, WhatIsHiddenInAPageDoesNotCount) {
    EXPECT_FALSE(page("{\\*\\comment " + repeated("x", mostBytes) + "}Terms").isCut);
}

}  // namespace
}  // namespace installer
