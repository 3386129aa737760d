#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTextBrowser>

#include "qt/window/QtWindow.h"
#include "tests/qt/InterfaceTest.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::ElementsAre;
using testing::IsEmpty;

class QtWindowTest : public InterfaceTest {
  protected:
    std::unique_ptr<Interface> interface;
    std::shared_ptr<Window> window;

    void open(const std::string& contents = {}) {
        const std::string size =
            "<property name=\"geometry\"><rect><x>0</x><y>0</y><width>500</width>"
            "<height>300</height></rect></property>";
        interface = load(
            control("QMainWindow", "window", {{"closableBinding", "canClose"}},
                    size + control("QWidget", "contents", {},
                                   "<layout class=\"QVBoxLayout\">" + contents + "</layout>")));
        ASSERT_NE(interface, nullptr);
        window = interface->window("window");
        window->centerAndShow();
    }

    static QMainWindow& widget() { return named<QMainWindow>("window"); }

    static std::string button(const std::string& name, const std::string& properties = {}) {
        return "<item>" + control("QPushButton", name, {{"action", name}}, properties) + "</item>";
    }

    const std::string isDefault = "<property name=\"default\"><bool>true</bool></property>";
};

TEST_F(QtWindowTest, AppearsInTheMiddleOfItsScreen) {
    open();
    EXPECT_TRUE(widget().isVisible());
    EXPECT_GE(widget().width(), 500);
    EXPECT_GE(widget().height(), 300);
    const QPoint off =
        widget().geometry().center() - widget().screen()->availableGeometry().center();
    EXPECT_LE(off.manhattanLength(), 2);
}

TEST_F(QtWindowTest, IsNeverLargerThanItsScreen) {
    open("<item>" + control("QTextBrowser", "text") + "</item>");
    widget().resize(10'000, 10'000);
    window->centerAndShow();
    EXPECT_EQ(widget().size(), widget().screen()->availableGeometry().size());
}

TEST_F(QtWindowTest, GivesTheFocusToTheDefaultButton) {
    open(button("back") + button("next", isDefault));
    EXPECT_EQ(widget().focusWidget(), &named<QPushButton>("next"));
}

TEST_F(QtWindowTest, StaysOpenForTheUserWhileItMustNotBeClosed) {
    owner.values["canClose"] = false;
    open();
    EXPECT_FALSE(widget().close());
    EXPECT_TRUE(widget().isVisible());
    owner.change("canClose", true);
    EXPECT_TRUE(widget().close());
    EXPECT_FALSE(widget().isVisible());
}

TEST_F(QtWindowTest, ClosesForTheCoreAtAnyTime) {
    owner.values["canClose"] = false;
    open();
    window->close();
    EXPECT_FALSE(widget().isVisible());
}

TEST_F(QtWindowTest, TheApplicationEndsWithItsLastWindow) {
    open();
    QMetaObject::invokeMethod(&widget(), [this] { window->close(); }, Qt::QueuedConnection);
    EXPECT_EQ(QApplication::exec(), 0);
}

TEST_F(QtWindowTest, CanBePutAside) {
    open();
    window->miniaturize();
    EXPECT_TRUE(widget().isMinimized());
}

TEST_F(QtWindowTest, DoesNothingWhenItIsGone) {
    open();
    interface.reset();
    window->centerAndShow();
    window->miniaturize();
    window->close();
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(QtWindowTest, ReturnPressesTheDefaultButtonWhereverTheFocusIs) {
    open("<item>" + control("QCheckBox", "box") + "</item><item>" + control("QListWidget", "list") +
         "</item><item>" + control("QLineEdit", "field") + "</item><item>" +
         control("QTextBrowser", "text") + "</item>" + button("back") + button("next", isDefault));
    for (const char* name : {"box", "list", "field", "text", "next"}) {
        owner.told.clear();
        auto& focused = named<QWidget>(name);
        focused.setFocus();
        QTest::keyClick(&focused, Qt::Key_Return);
        EXPECT_THAT(owner.told, ElementsAre("perform next")) << name;
    }
}

TEST_F(QtWindowTest, ReturnOnAnotherButtonPressesThatOne) {
    open(button("back") + button("next", isDefault));
    named<QPushButton>("back").setFocus();
    QTest::keyClick(&named<QPushButton>("back"), Qt::Key_Return);
    EXPECT_THAT(owner.told, ElementsAre("perform back"));
}

TEST_F(QtWindowTest, ReturnDoesNothingWhileTheDefaultButtonIsDisabled) {
    open(button("back") + button("next", isDefault));
    named<QPushButton>("next").setEnabled(false);
    widget().setFocus();
    QTest::keyClick(&widget(), Qt::Key_Return);
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(QtWindowTest, AHeldReturnPressesOnce) {
    open(button("next", isDefault));
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QApplication::sendEvent(&named<QPushButton>("next"), &held);
    EXPECT_THAT(owner.told, IsEmpty());
}

}  // namespace
