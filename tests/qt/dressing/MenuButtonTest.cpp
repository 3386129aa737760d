#include <QAccessible>
#include <QMenu>
#include <QTest>
#include <QToolButton>

#include "tests/qt/InterfaceTest.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::ElementsAre;

class MenuButtonTest : public InterfaceTest {
  protected:
    std::unique_ptr<Interface> interface;

    void SetUp() override {
        const std::string items =
            "<addaction name=\"aboutItem\"/><addaction name=\"separator\"/>"
            "<addaction name=\"quitItem\"/>";
        const auto item = [](const std::string& name, const std::string& action) {
            return "<action name=\"" + name + "\">" + dynamicProperty("action", action) +
                   "<property name=\"shortcut\"><string>Ctrl+Q</string></property></action>";
        };
        interface = load(
            "<widget class=\"QMainWindow\" name=\"window\">" +
            control("QWidget", "contents", {},
                    "<layout class=\"QHBoxLayout\"><item>" +
                        control("QToolButton", "menuButton", {{"holdsMenu", "true"}}, items) +
                        "</item><item>" + control("QPushButton", "other") + "</item></layout>") +
            "<action name=\"aboutItem\">" + dynamicProperty("action", "showAbout") + "</action>" +
            item("quitItem", "quit") + "</widget>");
        ASSERT_NE(interface, nullptr);
        auto& window = named<QWidget>("window");
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    static QMenu& menu() { return *named<QToolButton>("menuButton").findChild<QMenu*>(); }
};

TEST_F(MenuButtonTest, HoldsTheItemsOfTheDescription) {
    const QList<QAction*> items = menu().actions();
    ASSERT_EQ(items.size(), 3);
    EXPECT_TRUE(items[1]->isSeparator());
    items[0]->trigger();
    EXPECT_THAT(owner.told, ElementsAre("perform showAbout"));
}

TEST_F(MenuButtonTest, OpensByTheMenuKeyFromAnywhere) {
    named<QWidget>("other").setFocus();
    QTest::keyClick(&named<QWidget>("other"), Qt::Key_F10);
    EXPECT_TRUE(menu().isVisible());
    QTest::keyClick(&menu(), Qt::Key_Escape);
    EXPECT_FALSE(menu().isVisible());
}

TEST_F(MenuButtonTest, OpensByAPressAndByReturn) {
    auto& button = named<QToolButton>("menuButton");
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_TRUE(menu().isVisible());
    menu().hide();
    QTest::keyClick(&button, Qt::Key_Return);
    EXPECT_TRUE(menu().isVisible());
}

TEST_F(MenuButtonTest, AScreenReaderFindsTheOpenMenuInTheButton) {
    auto& button = named<QToolButton>("menuButton");
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&button);
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::ButtonMenu);
    EXPECT_EQ(seen->childCount(), 0);
    seen->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_EQ(seen->childCount(), 1);
    EXPECT_EQ(seen->child(0)->object(), &menu());
    EXPECT_EQ(seen->indexOfChild(seen->child(0)), 0);
}

TEST_F(MenuButtonTest, TheItemsKeysWorkWhileItIsClosed) {
    QTest::keyClick(&named<QWidget>("other"), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_THAT(owner.told, ElementsAre("perform quit"));
}

}  // namespace
