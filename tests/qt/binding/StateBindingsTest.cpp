#include <QAction>
#include <QCheckBox>
#include <QDialog>
#include <QImage>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include "tests/qt/InterfaceTest.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::ElementsAre;
using testing::IsEmpty;

class StateBindingsTest : public InterfaceTest {};

TEST_F(StateBindingsTest, AButtonIsEnabledWhileThePropertyIsTrue) {
    show("QPushButton", {{"enabledBinding", "can"}});
    EXPECT_FALSE(shown<QPushButton>().isEnabled());
    owner.change("can", true);
    EXPECT_TRUE(shown<QPushButton>().isEnabled());
    owner.change("can", false);
    EXPECT_FALSE(shown<QPushButton>().isEnabled());
}

TEST_F(StateBindingsTest, APressedButtonPerformsItsActionWithItselfAsTheSender) {
    show("QPushButton", {{"action", "nextView"}});
    QTest::mouseClick(&shown<QPushButton>(), Qt::LeftButton);
    EXPECT_THAT(owner.told, ElementsAre("perform nextView"));
    EXPECT_THAT(owner.senders, ElementsAre(&shown<QPushButton>()));
}

// A program for blind people presses a control wherever it is; the mouse and the keys cannot.
TEST_F(StateBindingsTest, NoPressReachesAControlBehindAModalQuestion) {
    owner.values["flag"] = false;
    const auto interface =
        load(control("QMainWindow", "window", {},
                     control("QWidget", "contents", {},
                             control("QPushButton", "button", {{"action", "nextView"}}) +
                                 control("QCheckBox", "box", {{"checkedBinding", "flag"}}))));
    named<QMainWindow>("window").show();
    QDialog question(&named<QMainWindow>("window"));
    question.setModal(true);
    question.show();
    ASSERT_EQ(QApplication::activeModalWidget(), &question);
    named<QPushButton>("button").click();
    named<QCheckBox>("box").click();
    EXPECT_THAT(owner.told, IsEmpty());
    EXPECT_FALSE(named<QCheckBox>("box").isChecked());
    question.hide();
    named<QPushButton>("button").click();
    named<QCheckBox>("box").click();
    EXPECT_THAT(owner.told, ElementsAre("perform nextView", "set flag on"));
}

TEST_F(StateBindingsTest, AnActionMayEndTheInterfaceThatItCameFrom) {
    show("QPushButton", {{"action", "quit"}});
    owner.whenPerforming = [this](std::string_view) { hide(); };
    // As in the running application, where the press comes from a turn of the event loop.
    QMetaObject::invokeMethod(
        &shown<QPushButton>(),
        [] {
            shown<QPushButton>().click();
            QApplication::exit();
        },
        Qt::QueuedConnection);
    QApplication::exec();
    EXPECT_THAT(owner.told, ElementsAre("perform quit"));
}

TEST_F(StateBindingsTest, AButtonThatWasDisabledWithTheFocusDoesNotHandItToItsNeighbour) {
    owner.values["can"] = true;
    const auto interface = load(control(
        "QMainWindow", "window", {},
        control("QWidget", "contents", {},
                "<layout class=\"QHBoxLayout\"><item>" +
                    control("QPushButton", "forward", {{"enabledBinding", "can"}}) +
                    "</item><item>" + control("QPushButton", "backward") + "</item></layout>")));
    auto& window = named<QMainWindow>("window");
    window.show();
    auto& forward = named<QPushButton>("forward");
    forward.setFocus();
    owner.change("can", false);
    EXPECT_EQ(window.focusWidget(), nullptr);
    owner.change("can", true);
    EXPECT_EQ(window.focusWidget(), &forward);

    owner.change("can", false);
    named<QPushButton>("backward").setFocus();
    owner.change("can", true);
    EXPECT_EQ(window.focusWidget(), &named<QPushButton>("backward"));
}

TEST_F(StateBindingsTest, TheFocusOfADisabledButtonWaitsWhereKeysDoNoHarm) {
    owner.values["can"] = true;
    const auto interface = load(
        control("QMainWindow", "window", {},
                control("QWidget", "contents", {},
                        "<layout class=\"QHBoxLayout\"><item>" +
                            control("QPushButton", "forward", {{"enabledBinding", "can"}}) +
                            "</item><item>" + control("QPushButton", "other") + "</item><item>" +
                            control("QCheckBox", "box") + "</item></layout>")));
    auto& window = named<QMainWindow>("window");
    window.show();
    auto& forward = named<QPushButton>("forward");
    forward.setFocus();
    owner.change("can", false);
    EXPECT_EQ(window.focusWidget(), &named<QCheckBox>("box"));
    owner.change("can", true);
    EXPECT_EQ(window.focusWidget(), &forward);

    owner.change("can", false);
    named<QPushButton>("other").setFocus();
    owner.change("can", true);
    EXPECT_EQ(window.focusWidget(), &named<QPushButton>("other"));
}

struct Visibility {
    const char* name;
    PropertyValue value;
    bool visible;
};

class StateBindingsVisible : public InterfaceTest,
                             public testing::WithParamInterface<Visibility> {};

TEST_P(StateBindingsVisible, ShowsTheControlWhereThereIsSomething) {
    owner.values["what"] = GetParam().value;
    show("QLabel", {{"visibleBinding", "what"}});
    EXPECT_EQ(shown<QLabel>().isVisible(), GetParam().visible);
}

INSTANTIATE_TEST_SUITE_P(Values, StateBindingsVisible,
                         testing::Values(Visibility{"none", {}, false},
                                         Visibility{"false", false, false},
                                         Visibility{"true", true, true},
                                         Visibility{"emptyText", std::string(), false},
                                         Visibility{"text", std::string("x"), true},
                                         Visibility{"emptyList", std::vector<ListRow>(), false},
                                         Visibility{"list", std::vector<ListRow>(1), true}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(StateBindingsTest, AClickOnASwitchTellsTheOwner) {
    owner.values["chosen"] = true;
    show("QCheckBox", {{"checkedBinding", "chosen"}});
    auto& box = shown<QCheckBox>();
    EXPECT_TRUE(box.isChecked());
    box.click();
    EXPECT_THAT(owner.told, ElementsAre("set chosen off"));
    EXPECT_FALSE(box.isChecked());
}

TEST_F(StateBindingsTest, AChangeByTheOwnerIsShownAndNotToldBack) {
    show("QCheckBox", {{"checkedBinding", "chosen"}});
    owner.change("chosen", true);
    EXPECT_TRUE(shown<QCheckBox>().isChecked());
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(StateBindingsTest, ASwitchShowsWhatTheOwnerMadeOfTheClick) {
    owner.acceptsChanges = false;
    show("QCheckBox", {{"checkedBinding", "chosen"}});
    shown<QCheckBox>().click();
    EXPECT_THAT(owner.told, ElementsAre("set chosen on"));
    EXPECT_FALSE(shown<QCheckBox>().isChecked());
}

TEST_F(StateBindingsTest, AMenuItemCanBeSwitchedDisabledAndHidden) {
    owner.values = {{"chosen", false}, {"can", false}, {"there", false}};
    const auto interface =
        load(control("QMainWindow", "window", {},
                     "<action name=\"item\">" + dynamicProperty("checkedBinding", "chosen") +
                         dynamicProperty("enabledBinding", "can") +
                         dynamicProperty("visibleBinding", "there") + "</action>"));
    auto* item = named<QMainWindow>("window").findChild<QAction*>("item");
    EXPECT_FALSE(item->isEnabled());
    EXPECT_FALSE(item->isVisible());
    owner.change("can", true);
    owner.change("there", true);
    EXPECT_TRUE(item->isVisible());
    item->trigger();
    EXPECT_THAT(owner.told, ElementsAre("set chosen on"));
    EXPECT_TRUE(item->isChecked());
}

class StateBindingsImage : public StateBindingsTest {
  protected:
    std::string picture(int width, int height) {
        QImage image(width, height, QImage::Format_ARGB32);
        image.fill(Qt::red);
        const QString path = folder_.filePath("picture.png");
        EXPECT_TRUE(image.save(path));
        return fromQt(path);
    }

    const std::string fixedSize =
        "<property name=\"minimumSize\"><size><width>16</width><height>16</height></size>"
        "</property><property name=\"maximumSize\"><size><width>16</width><height>16</height>"
        "</size></property>";

  private:
    QTemporaryDir folder_;
};

TEST_F(StateBindingsImage, APictureOfOtherProportionsIsFittedWithoutBeingStretched) {
    owner.values["picture"] = Image{picture(64, 32)};
    show("QLabel", {{"imageBinding", "picture"}}, fixedSize);
    auto& label = shown<QLabel>();
    label.resize(16, 16);
    const QImage seen = label.grab().toImage();
    EXPECT_EQ(seen.pixelColor(8, 8), QColor(Qt::red));
    EXPECT_NE(seen.pixelColor(8, 1), QColor(Qt::red));
    EXPECT_NE(seen.pixelColor(8, 14), QColor(Qt::red));
}

TEST_F(StateBindingsImage, AMissingOrBrokenPictureShowsNothing) {
    owner.values["picture"] = Image{picture(64, 64)};
    show("QLabel", {{"imageBinding", "picture"}}, fixedSize);
    EXPECT_FALSE(shown<QLabel>().pixmap().isNull());
    owner.change("picture", Image{"/nowhere.png"});
    EXPECT_TRUE(shown<QLabel>().pixmap().isNull());
    owner.change("picture", Image{"/etc/passwd"});
    EXPECT_TRUE(shown<QLabel>().pixmap().isNull());
    owner.change("picture", PropertyValue{});
    EXPECT_TRUE(shown<QLabel>().pixmap().isNull());
}

TEST_F(StateBindingsImage, AMissingPictureHasAPlaceholderWhereTheLabelWantsOne) {
    owner.values["picture"] = Image{};
    show("QLabel", {{"imageBinding", "picture"}, {"placeholder", "true"}}, fixedSize);
    const QImage empty = shown<QLabel>().pixmap().toImage();
    EXPECT_FALSE(empty.isNull());
    owner.change("picture", Image{picture(64, 64)});
    EXPECT_NE(shown<QLabel>().pixmap().toImage(), empty);
    owner.change("picture", Image{"/nowhere.png"});
    EXPECT_EQ(shown<QLabel>().pixmap().toImage(), empty);
}

TEST_F(StateBindingsTest, TheNameForScreenReadersFollowsItsProperty) {
    owner.values["outcome"] = std::string("Succeeded");
    show("QLabel", {{"accessibleNameBinding", "outcome"}});
    EXPECT_EQ(shown<QLabel>().accessibleName(), "Succeeded");
    owner.change("outcome", std::string("Failed"));
    EXPECT_EQ(shown<QLabel>().accessibleName(), "Failed");
}

}  // namespace
