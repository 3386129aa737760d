// Whole documents as editors write them, with all that such files carry besides their text.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/foundation/rtf/RtfReading.h"

namespace installer::test {
namespace {

std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

StyledText document(const std::string& name) {
    return textOf(contentsOf(std::filesystem::path(TEST_DATA) / name));
}

TEST(RtfDocuments, ReadsADocumentOfANotesEditor) {
    const StyledText text = document("notes-editor.rtf");
    EXPECT_EQ(text.plainText(),
              "Welcome to „Paper Lantern“\n"
              "A wash for naïve skies — and 日本 paper\n"
              "\t•\tOpen a picture\n"
              "\t•\tChoose Filter and then Lantern\n"
              "Help pages, braces { and } and a backslash \\\n"
              "\n"
              "The end\nof it 🎮");
    ASSERT_EQ(text.paragraphs.size(), 7U);
    const TextStyle title{
        .fontFamily = "Helvetica", .pointSize = 14, .bold = true, .color = Color{217, 11, 0}};
    EXPECT_EQ(text.paragraphs[0].runs.front().style, title);
    EXPECT_EQ(text.paragraphs[1].alignment, Paragraph::Alignment::center);
    EXPECT_EQ(text.paragraphs[2].leftIndent, 36);
    EXPECT_EQ(text.paragraphs[2].firstLineIndent, -36);
    ASSERT_EQ(text.paragraphs[3].runs.size(), 4U);
    EXPECT_EQ(text.paragraphs[3].runs[1].style.fontFamily, "HelveticaNeue");
    EXPECT_TRUE(text.paragraphs[3].runs[3].style.italic);
    EXPECT_EQ(text.paragraphs[4].runs.front(),
              (TextRun{"Help pages",
                       {.fontFamily = "Helvetica",
                        .pointSize = 12,
                        .underline = true,
                        .color = Color{0, 0, 238},
                        .link = "https://lantern.example/help?page=1&lang=en"}}));
    EXPECT_EQ(text.paragraphs[6].runs.front().style.fontFamily, "");
}

TEST(RtfDocuments, ReadsADocumentOfAWordProcessor) {
    const StyledText text = document("word-processor.rtf");
    EXPECT_EQ(text.plainText(),
              "Glasmalerei für Photoshop\n"
              "Das Maß über € 9 und čeština alt.\u00A0Ende\nzweite\u2011Zeile\n"
              "•\tErster Punkt\n"
              "Hilfe im Netz “hier”\n"
              "Złožka\n"
              "Format\tGröße\t\n");
    ASSERT_EQ(text.paragraphs.size(), 7U);
    EXPECT_EQ(text.paragraphs[0],
              (Paragraph{.alignment = Paragraph::Alignment::center,
                         .spaceBefore = 12,
                         .spaceAfter = 8,
                         .runs = {{"Glasmalerei für Photoshop",
                                   {.fontFamily = "Calibri", .pointSize = 16, .bold = true}}}}));
    EXPECT_EQ(text.paragraphs[1].alignment, Paragraph::Alignment::justified);
    ASSERT_EQ(text.paragraphs[1].runs.size(), 3U);
    EXPECT_EQ(text.paragraphs[1].runs[1],
              (TextRun{" alt", {.fontFamily = "Calibri", .pointSize = 11, .strikethrough = true}}));
    EXPECT_EQ(text.paragraphs[2].firstLineIndent, -18);
    EXPECT_EQ(text.paragraphs[3].runs.front().style.link, "https://glas.example/hilfe#teil2");
    EXPECT_EQ(text.paragraphs[3].rightIndent, 28.35);
}

TEST(RtfDocuments, ReadsADocumentOfAnOfficeSuite) {
    const StyledText text = document("office-suite.rtf");
    EXPECT_EQ(text.plainText(), "Aligned right\nIndented –ü😀Write us!");
    ASSERT_EQ(text.paragraphs.size(), 2U);
    EXPECT_EQ(text.paragraphs[0].alignment, Paragraph::Alignment::right);
    EXPECT_EQ(text.paragraphs[1].leftIndent, 28.35);
    EXPECT_EQ(text.paragraphs[1].spaceBefore, 2.85);
    EXPECT_EQ(text.paragraphs[1].spaceAfter, 5.65);
    ASSERT_EQ(text.paragraphs[1].runs.size(), 4U);
    EXPECT_EQ(text.paragraphs[1].runs[0].style.fontFamily, "München Sans");
    EXPECT_EQ(text.paragraphs[1].runs[1].style.link, "mailto:help@suite.example");
    EXPECT_EQ(text.paragraphs[1].runs[2].style.link, "mailto:help@suite.example");
    EXPECT_EQ(text.paragraphs[1].runs[3].style.link, "");
}

TEST(RtfDocuments, ReadsADocumentOfASimpleEditor) {
    const StyledText text = document("simple-editor.rtf");
    EXPECT_EQ(text.plainText(), "Установка: done\n•\tФильтр\n•\tunderlined\nж");
    ASSERT_EQ(text.paragraphs.size(), 4U);
    EXPECT_EQ(text.paragraphs[1].leftIndent, 36);
    EXPECT_EQ(text.paragraphs[1].runs[1].style.color, (Color{192, 0, 0}));
    EXPECT_TRUE(text.paragraphs[2].runs[1].style.underline);
}

TEST(RtfDocuments, ReadsAJapaneseDocument) {
    EXPECT_EQ(document("japanese.rtf").plainText(), "フィルタを表示© 2 ｶﾅ ①纊∵\nソボマ");
}

TEST(RtfDocuments, ReadsADocumentFromRightToLeft) {
    const StyledText text = document("hebrew.rtf");
    EXPECT_EQ(text.plainText(), "שלום Filter\nمرحبا\nleft\u200F");
    ASSERT_EQ(text.paragraphs.size(), 3U);
    EXPECT_TRUE(text.paragraphs[0].rightToLeft);
    EXPECT_EQ(text.paragraphs[0].alignment, Paragraph::Alignment::right);
    EXPECT_TRUE(text.paragraphs[1].rightToLeft);
    EXPECT_FALSE(text.paragraphs[2].rightToLeft);
}

TEST(RtfDocuments, ReadsRawBytes) {
    EXPECT_EQ(document("raw-bytes.rtf").plainText(), "UTF-8: Größe — 🎨\nCode page: Größe — fin");
}

TEST(RtfDocuments, AnyPartOfADocumentIsRefused) {
    const std::string rtf = contentsOf(std::filesystem::path(TEST_DATA) / "notes-editor.rtf");
    for (std::size_t length = 6; length < rtf.rfind('}'); ++length) {
        EXPECT_EQ(errorOf(rtf.substr(0, length)), "the text ends before its groups do");
    }
}

TEST(RtfDocuments, EveryResourceOfTheProductIsReadWhole) {
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(PRODUCT_RESOURCES)) {
        if (entry.path().extension() != ".rtf") continue;
        SCOPED_TRACE(entry.path());
        const StyledText text = textOf(contentsOf(entry.path()));
        EXPECT_FALSE(text.paragraphs.empty());
        EXPECT_EQ(text.plainText().find("\uFFFD"), std::string::npos);
        for (const Paragraph& paragraph : text.paragraphs) EXPECT_FALSE(paragraph.runs.empty());
        ++count;
    }
    EXPECT_GE(count, 8);
}

}  // namespace
}  // namespace installer::test
