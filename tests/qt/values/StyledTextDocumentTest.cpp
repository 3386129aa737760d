#include <QFontDatabase>
#include <QTextBlock>
#include <QTextDocument>
#include <QWidget>

#include <gtest/gtest.h>

#include "qt/theme/ReadableColor.h"
#include "qt/values/QtText.h"
#include "qt/values/StyledTextDocument.h"

namespace {

using namespace installer;

class StyledTextDocumentTest : public testing::Test {
  protected:
    QTextDocument document;
    TextLook look{.font = QFont("Noto Sans", 10),
                  .ground = Qt::white,
                  .link = QColor(0, 0, 238),
                  .pixelsPerPoint = 2};

    QTextCharFormat styled(const TextStyle& style) {
        setStyledText(document, {{Paragraph{.runs = {{"text", style}}}}}, look);
        return document.firstBlock().begin().fragment().charFormat();
    }

    QTextBlockFormat formatted(Paragraph paragraph) {
        paragraph.runs = {{"text", {}}};
        setStyledText(document, {{paragraph}}, look);
        return document.firstBlock().blockFormat();
    }
};

TEST_F(StyledTextDocumentTest, KeepsParagraphsAndLineBreaksApart) {
    setStyledText(document,
                  {{Paragraph{.runs = {{"one\ntwo", {}}, {" more", {}}}}, Paragraph{},
                    Paragraph{.runs = {{"last", {}}}}}},
                  look);
    EXPECT_EQ(document.blockCount(), 3);
    EXPECT_EQ(document.firstBlock().text(), QString("one") + QChar(0x2028) + "two more");
    EXPECT_EQ(document.lastBlock().text(), "last");
}

TEST_F(StyledTextDocumentTest, ReplacesWhatWasThereWithItsStyles) {
    static_cast<void>(formatted({.alignment = Paragraph::Alignment::center, .leftIndent = 30}));
    setStyledText(document, StyledText::fromPlainText("new"), look);
    EXPECT_EQ(document.toPlainText(), "new");
    EXPECT_EQ(document.firstBlock().blockFormat().leftMargin(), 0);
    EXPECT_FALSE(document.firstBlock().blockFormat().alignment().testFlag(Qt::AlignHCenter));
    setStyledText(document, {}, look);
    EXPECT_TRUE(document.isEmpty());
}

TEST_F(StyledTextDocumentTest, AStyleHoldsForItsRunOnly) {
    setStyledText(document, {{Paragraph{.runs = {{"bold", {.bold = true}}, {"plain", {}}}}}}, look);
    auto run = document.firstBlock().begin();
    EXPECT_EQ(run.fragment().charFormat().fontWeight(), QFont::Bold);
    ++run;
    EXPECT_NE(run.fragment().charFormat().fontWeight(), QFont::Bold);
}

TEST_F(StyledTextDocumentTest, SizesAndWeightsAreShown) {
    EXPECT_EQ(styled({.pointSize = 13}).fontPointSize(), 13);
    EXPECT_FALSE(styled({}).hasProperty(QTextFormat::FontPointSize));
    EXPECT_TRUE(styled({.italic = true}).fontItalic());
    EXPECT_TRUE(styled({.underline = true}).fontUnderline());
    EXPECT_TRUE(styled({.strikethrough = true}).fontStrikeOut());
    EXPECT_EQ(document.defaultFont(), look.font);
}

TEST_F(StyledTextDocumentTest, OnlyAFontThatTheMachineHasReplacesTheWindows) {
    const QString family = QFontDatabase::families().constFirst();
    EXPECT_EQ(styled({.fontFamily = fromQt(family)}).fontFamilies().toStringList(),
              QStringList(family));
    EXPECT_FALSE(styled({.fontFamily = "No Such Face"}).hasProperty(QTextFormat::FontFamilies));
}

TEST_F(StyledTextDocumentTest, BlackAndNoColourAreTheWindowsOwn) {
    EXPECT_FALSE(styled({.color = Color{0, 0, 0}}).hasProperty(QTextFormat::ForegroundBrush));
    EXPECT_FALSE(styled({}).hasProperty(QTextFormat::ForegroundBrush));
}

TEST_F(StyledTextDocumentTest, AColourStaysItselfWhereItCanBeReadAndIsMovedWhereItCannot) {
    EXPECT_EQ(styled({.color = Color{0, 0, 128}}).foreground().color(), QColor(0, 0, 128));
    look.ground = QColor(30, 30, 32);
    const QColor onDark = styled({.color = Color{0, 0, 128}}).foreground().color();
    EXPECT_GE(contrast(onDark, look.ground), 4.5);
    EXPECT_GT(onDark.blue(), onDark.red());
}

TEST_F(StyledTextDocumentTest, ALinkLooksAndActsLikeOne) {
    const auto format = styled({.color = Color{0, 0, 0}, .link = "https://example.com/"});
    EXPECT_TRUE(format.isAnchor());
    EXPECT_EQ(format.anchorHref(), "https://example.com/");
    EXPECT_TRUE(format.fontUnderline());
    EXPECT_EQ(format.foreground().color(), look.link);
}

TEST_F(StyledTextDocumentTest, DistancesArePointsOfTheScreen) {
    const auto format = formatted({.leftIndent = 10,
                                   .rightIndent = 5,
                                   .firstLineIndent = -4,
                                   .spaceBefore = 3,
                                   .spaceAfter = 6});
    EXPECT_EQ(format.leftMargin(), 20);
    EXPECT_EQ(format.rightMargin(), 10);
    EXPECT_EQ(format.textIndent(), -8);
    EXPECT_EQ(format.topMargin(), 6);
    EXPECT_EQ(format.bottomMargin(), 12);
}

TEST_F(StyledTextDocumentTest, SidesThatATextNamesAreNotMirrored) {
    using Alignment = Paragraph::Alignment;
    EXPECT_EQ(formatted({.alignment = Alignment::left}).alignment(),
              Qt::AlignLeft | Qt::AlignAbsolute);
    EXPECT_EQ(formatted({.alignment = Alignment::right}).alignment(),
              Qt::AlignRight | Qt::AlignAbsolute);
    EXPECT_EQ(formatted({.alignment = Alignment::center}).alignment(), Qt::AlignHCenter);
    EXPECT_EQ(formatted({.alignment = Alignment::justified}).alignment(), Qt::AlignJustify);
    EXPECT_FALSE(formatted({}).alignment().testFlag(Qt::AlignAbsolute));
}

TEST_F(StyledTextDocumentTest, ReadsInTheWindowsDirectionUnlessTheTextSaysRightToLeft) {
    EXPECT_EQ(formatted({}).layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(formatted({.rightToLeft = true}).layoutDirection(), Qt::RightToLeft);
    look.direction = Qt::RightToLeft;
    EXPECT_EQ(formatted({}).layoutDirection(), Qt::RightToLeft);
}

TEST(StyledTextDocumentTextLook, AViewWithoutAGroundOfItsOwnLiesOnTheWindow) {
    QWidget widget;
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(1, 2, 3));
    palette.setColor(QPalette::Base, QColor(4, 5, 6));
    widget.setPalette(palette);
    EXPECT_EQ(TextLook::of(widget).ground, QColor(4, 5, 6));
    palette.setColor(QPalette::Base, Qt::transparent);
    widget.setPalette(palette);
    EXPECT_EQ(TextLook::of(widget).ground, QColor(1, 2, 3));
}

}  // namespace
