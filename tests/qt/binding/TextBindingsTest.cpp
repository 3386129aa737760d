#include <QAccessible>
#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>

#include "tests/qt/InterfaceTest.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::ElementsAre;

class TextBindingsTest : public InterfaceTest {
  protected:
    static StyledText styled(const std::string& text, TextStyle style) {
        return {{Paragraph{.runs = {TextRun{text, std::move(style)}}}}};
    }
};

TEST_F(TextBindingsTest, ALabelShowsWhatTheOwnerSaysAndEachChange) {
    owner.values["title"] = std::string("Grün & <b>plain</b>");
    show("QLabel", {{"textBinding", "title"}});
    auto& label = shown<QLabel>();
    EXPECT_EQ(label.text(), QString::fromUtf8("Grün & <b>plain</b>"));
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
    owner.change("title", std::string("next"));
    EXPECT_EQ(label.text(), "next");
    owner.change("other", std::string("no concern of the label"));
    EXPECT_EQ(label.text(), "next");
    owner.change("title", PropertyValue{});
    EXPECT_EQ(label.text(), "");
}

TEST_F(TextBindingsTest, AStyledTextKeepsItsStyleInALabel) {
    owner.values["title"] = styled("bold", {.bold = true});
    show("QLabel", {{"textBinding", "title"}});
    EXPECT_EQ(shown<QLabel>().textFormat(), Qt::RichText);
    EXPECT_TRUE(shown<QLabel>().text().contains("font-weight"));
}

TEST_F(TextBindingsTest, ALinkInALabelIsPassedOn) {
    owner.values["title"] = styled("here", {.link = "https://www.example.com/a?b=c&d"});
    show("QLabel", {{"textBinding", "title"}});
    Q_EMIT shown<QLabel>().linkActivated("https://www.example.com/a?b=c&d");
    EXPECT_THAT(links, ElementsAre("https://www.example.com/a?b=c&d"));
}

TEST_F(TextBindingsTest, AnAmpersandIsShownAndNoMnemonic) {
    owner.values["title"] = std::string("Save & Quit");
    show("QPushButton", {{"textBinding", "title"}});
    EXPECT_EQ(shown<QPushButton>().text(), "Save && Quit");
    EXPECT_TRUE(shown<QPushButton>().shortcut().isEmpty());
}

TEST_F(TextBindingsTest, AFieldShowsALongPathFromItsStartAndWholeInItsToolTip) {
    owner.values["path"] = std::string("/Volumes/<i>Disk</i>/") + std::string(300, 'x');
    show("QLineEdit", {{"textBinding", "path"}});
    auto& field = shown<QLineEdit>();
    EXPECT_EQ(fromQt(field.text()), std::get<std::string>(owner.values["path"]));
    EXPECT_EQ(field.cursorPosition(), 0);
    // No name of a folder is taken for a page.
    EXPECT_TRUE(field.toolTip().contains("&lt;i&gt;Disk"));
}

TEST_F(TextBindingsTest, WindowMenuAndMenuItemTakeTheirTitles) {
    owner.values = {{"window", std::string("Tone & Installer")},
                    {"menu", std::string("Tone")},
                    {"item", std::string("Quit Tone")}};
    const auto interface = load(control(
        "QMainWindow", "window", {{"textBinding", "window"}},
        control("QMenuBar", "bar", {},
                control("QMenu", "menu", {{"textBinding", "menu"}}, "<addaction name=\"item\"/>") +
                    "<addaction name=\"menu\"/>") +
            "<action name=\"item\">" + dynamicProperty("textBinding", "item") +
            dynamicProperty("action", "quit") + "</action>"));
    EXPECT_EQ(named<QMainWindow>("window").windowTitle(), "Tone & Installer");
    EXPECT_EQ(named<QMenu>("menu").title(), "Tone");
    auto* item = named<QMainWindow>("window").findChild<QAction*>("item");
    EXPECT_EQ(item->text(), "Quit Tone");
    item->trigger();
    EXPECT_THAT(owner.told, ElementsAre("perform quit"));
    EXPECT_THAT(owner.senders, ElementsAre(item));
}

TEST_F(TextBindingsTest, ATextBrowserShowsPlainAndStyledTexts) {
    owner.values["licence"] = std::string("<b>1.</b>\n2.");
    show("QTextBrowser", {{"textBinding", "licence"}});
    auto& browser = shown<QTextBrowser>();
    EXPECT_EQ(browser.toPlainText(), "<b>1.</b>\n2.");
    owner.change("licence", styled("big", {.pointSize = 31}));
    EXPECT_EQ(browser.toPlainText(), "big");
    EXPECT_EQ(browser.document()->firstBlock().begin().fragment().charFormat().fontPointSize(), 31);
    owner.change("licence", PropertyValue{});
    EXPECT_EQ(browser.toPlainText(), "");
    EXPECT_TRUE(browser.isReadOnly());
}

TEST_F(TextBindingsTest, ALinkInATextIsPassedOnAndTheTextStays) {
    owner.values["text"] = styled("here", {.link = "https://www.example.com/%C3%A4?b=c"});
    show("QTextBrowser", {{"textBinding", "text"}});
    auto& browser = shown<QTextBrowser>();
    Q_EMIT browser.anchorClicked(QUrl("https://www.example.com/%C3%A4?b=c"));
    EXPECT_THAT(links, ElementsAre("https://www.example.com/%C3%A4?b=c"));
    EXPECT_EQ(browser.toPlainText(), "here");
    EXPECT_FALSE(browser.openLinks());
}

TEST_F(TextBindingsTest, TheSameTextAnnouncedAgainStaysWhereItWasScrolledTo) {
    std::string lines;
    for (int line = 0; line < 300; ++line) lines += "line\n";
    owner.values["text"] = lines;
    show("QTextBrowser", {{"textBinding", "text"}});
    QScrollBar& place = *shown<QTextBrowser>().verticalScrollBar();
    EXPECT_EQ(place.value(), 0);
    place.setValue(200);
    owner.change("text", lines);
    EXPECT_EQ(place.value(), 200);
    owner.change("text", lines + "another");
    EXPECT_EQ(place.value(), 0);
}

TEST_F(TextBindingsTest, OtherColoursOfTheWindowAreFollowed) {
    owner.values["text"] = styled("blue", {.color = Color{0, 0, 128}});
    show("QTextBrowser", {{"textBinding", "text"}});
    auto& browser = shown<QTextBrowser>();
    const auto color = [&] {
        return browser.document()
            ->firstBlock()
            .begin()
            .fragment()
            .charFormat()
            .foreground()
            .color();
    };
    EXPECT_EQ(color(), QColor(0, 0, 128));
    QPalette dark(Qt::black);
    browser.setPalette(dark);
    EXPECT_NE(color(), QColor(0, 0, 128));
}

TEST_F(TextBindingsTest, APlainTextLabelIsHiddenWhileThereIsNoPlainText) {
    owner.values["text"] = std::string("plain");
    show("QLabel", {{"plainTextBinding", "text"}});
    auto& label = shown<QLabel>();
    EXPECT_FALSE(label.isHidden());
    EXPECT_EQ(label.text(), "plain");
    owner.change("text", styled("styled", {}));
    EXPECT_TRUE(label.isHidden());
    owner.change("text", std::string("again"));
    EXPECT_FALSE(label.isHidden());
    owner.change("text", std::string());
    EXPECT_TRUE(label.isHidden());
    owner.change("text", PropertyValue{});
    EXPECT_TRUE(label.isHidden());
}

TEST_F(TextBindingsTest, APlainTextMayWrapWithinALongNameThatIsReadAloudAsItIs) {
    const std::string text = "Installing /Library/" + std::string(100, 'n');
    owner.values["text"] = text;
    show("QLabel", {{"plainTextBinding", "text"}});
    EXPECT_TRUE(shown<QLabel>().text().contains(QChar(0x200B)));
    EXPECT_EQ(
        fromQt(QAccessible::queryAccessibleInterface(&shown<QLabel>())->text(QAccessible::Name)),
        text);
}

TEST_F(TextBindingsTest, AStyledTextBrowserIsEmptyWhileTheTextIsPlain) {
    owner.values["text"] = styled("styled", {});
    show("QTextBrowser", {{"styledTextBinding", "text"}});
    EXPECT_EQ(shown<QTextBrowser>().toPlainText(), "styled");
    owner.change("text", std::string("plain"));
    EXPECT_EQ(shown<QTextBrowser>().toPlainText(), "");
}

TEST_F(TextBindingsTest, TextsOfTheBundleAreFilledIn) {
    bundle.tables["Localizable"] = {{"open_log", "Open & Look"}, {"log_name", "Log"}};
    show("QPushButton", {{"textKey", "open_log"}, {"accessibleNameKey", "log_name"}});
    EXPECT_EQ(shown<QPushButton>().text(), "Open && Look");
    EXPECT_EQ(shown<QPushButton>().accessibleName(), "Log");
}

TEST_F(TextBindingsTest, AKeyThatTheTableLacksGivesNoText) {
    show("QLabel", {{"textKey", "missing"}});
    EXPECT_EQ(shown<QLabel>().text(), "");
}

}  // namespace
