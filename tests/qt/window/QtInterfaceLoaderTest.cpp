#include <QLabel>
#include <QPointer>
#include <QPushButton>

#include "qt/window/QtInterfaceLoader.h"
#include "tests/qt/InterfaceTest.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class QtInterfaceLoaderTest : public InterfaceTest {
  protected:
    void expectRefused(const std::unique_ptr<Interface>& interface, const std::string& reason) {
        EXPECT_EQ(interface, nullptr);
        EXPECT_THAT(log.lines, ElementsAre(AllOf(HasSubstr("\"Test\""), HasSubstr(reason))));
    }
};

TEST_F(QtInterfaceLoaderTest, ADescriptionThatTheBundleLacksGivesNothingAndOneLineInTheLog) {
    expectRefused(loader.load("Test", owner), "the bundle has none");
}

TEST_F(QtInterfaceLoaderTest, AFileThatCannotBeReadGivesNothingAndOneLineInTheLog) {
    bundle.resources["Test.ui"] = "/nowhere/Test.ui";
    expectRefused(loader.load("Test", owner), "No such file");
}

TEST_F(QtInterfaceLoaderTest, BrokenDescriptionsGiveNothingAndTheReason) {
    expectRefused(loadFile("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"x\">"), "line 1");
}

TEST_F(QtInterfaceLoaderTest, AnEmptyFileGivesNothing) {
    EXPECT_EQ(loadFile(""), nullptr);
    EXPECT_EQ(log.lines.size(), 1U);
}

TEST_F(QtInterfaceLoaderTest, AnotherKindOfDocumentGivesNothing) {
    EXPECT_EQ(loadFile("<html><body/></html>"), nullptr);
    EXPECT_EQ(log.lines.size(), 1U);
}

TEST_F(QtInterfaceLoaderTest, AnUnknownClassAtTheRootIsNamedInTheLog) {
    expectRefused(load(control("NoSuchWindow", "window")), "NoSuchWindow");
}

TEST_F(QtInterfaceLoaderTest, AnUnknownClassWithinMakesTheWholeDescriptionUnusable) {
    expectRefused(load(control("QWidget", "view", {}, control("NoSuchControl", "inner"))),
                  "NoSuchControl");
}

TEST_F(QtInterfaceLoaderTest, PartsAreFoundByNameAndTypeOnly) {
    const auto interface =
        load(control("QMainWindow", "window", {},
                     control("QWidget", "contents", {},
                             control("QLabel", "label") + control("QListWidget", "list") +
                                 control("QProgressBar", "bar"))));
    ASSERT_NE(interface, nullptr);
    EXPECT_NE(interface->window("window"), nullptr);
    EXPECT_NE(interface->view("contents"), nullptr);
    EXPECT_NE(interface->textField("label"), nullptr);
    EXPECT_NE(interface->imageView("label"), nullptr);
    EXPECT_NE(interface->list("list"), nullptr);
    EXPECT_NE(interface->progressIndicator("bar"), nullptr);

    EXPECT_EQ(interface->window("contents"), nullptr);
    EXPECT_EQ(interface->textField("list"), nullptr);
    EXPECT_EQ(interface->imageView("bar"), nullptr);
    EXPECT_EQ(interface->list("label"), nullptr);
    EXPECT_EQ(interface->progressIndicator("label"), nullptr);
    EXPECT_EQ(interface->view("elsewhere"), nullptr);
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(QtInterfaceLoaderTest, APartAskedForTwiceIsTheSame) {
    const auto interface = load(control("QWidget", "view"));
    EXPECT_EQ(interface->view("view"), interface->view("view"));
}

TEST_F(QtInterfaceLoaderTest, PartsOfAnotherDescriptionPutIntoOneAreNotItsOwn) {
    const auto window = load(control("QWidget", "list"));
    const auto row = load(control("QWidget", "row", {}, control("QLabel", "label")));
    window->view("list")->addSubview(row->view("row"));
    EXPECT_EQ(window->textField("label"), nullptr);
}

TEST_F(QtInterfaceLoaderTest, ViewsThatWerePutNowhereEndWithTheirInterface) {
    auto interface = load(control("QWidget", "view"));
    const QPointer<QWidget> widget = &named<QWidget>("view");
    const auto view = interface->view("view");
    interface.reset();
    EXPECT_TRUE(widget.isNull());
    // Whoever still holds the view does no harm with it.
    view->setHidden(false);
    view->setFrame({0, 0}, {10, 10});
    view->addSubview(view);
    EXPECT_EQ(view->size(), Size{});
    EXPECT_EQ(view->superview(), nullptr);
}

TEST_F(QtInterfaceLoaderTest, ViewsThatWerePutIntoOthersStayButAreBoundNoLonger) {
    const auto window = load(control("QWidget", "list"));
    auto row = load(
        control("QWidget", "row", {},
                control("QPushButton", "button", {{"textBinding", "title"}, {"action", "press"}})));
    window->view("list")->addSubview(row->view("row"));
    owner.change("title", std::string("before"));
    row.reset();
    owner.change("title", std::string("after"));
    auto& button = named<QPushButton>("button");
    EXPECT_EQ(button.text(), "before");
    button.click();
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(QtInterfaceLoaderTest, AViewOfItsOwnIsAsLargeAsItsContentsWant) {
    const auto interface = load(control(
        "QWidget", "row", {},
        "<layout class=\"QHBoxLayout\"><item>" + control("QLabel", "label") + "</item></layout>"));
    const auto& row = named<QWidget>("row");
    EXPECT_EQ(interface->view("row")->size(), (Size{static_cast<double>(row.sizeHint().width()),
                                                    static_cast<double>(row.sizeHint().height())}));
}

TEST_F(QtInterfaceLoaderTest, ABindingThatDoesNotFitItsControlIsLoggedAndLeftOut) {
    const auto interface = load(control(
        "QWidget", "view", {},
        control("QProgressBar", "bar", {{"rowsBinding", "rows"}, {"action", "go"}}) +
            control("QLabel", "label", {{"guardsText", "true"}, {"textBinding", "title"}})));
    ASSERT_NE(interface, nullptr);
    EXPECT_THAT(log.lines, ElementsAre(AllOf(HasSubstr("\"bar\""), HasSubstr("\"rowsBinding\"")),
                                       AllOf(HasSubstr("\"bar\""), HasSubstr("\"action\"")),
                                       AllOf(HasSubstr("\"label\""), HasSubstr("\"guardsText\""))));
    owner.change("title", std::string("still bound"));
    EXPECT_EQ(named<QLabel>("label").text(), "still bound");
}

}  // namespace
