#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/HostModel.h"
#include "steps/running/RunningHostViewController.h"
#include "steps/running/RunningHostViewModel.h"
#include "tests/support/FakeMainController.h"
#include "tests/support/FakeWindow.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string payload = "/Installer.app/Contents/Resources/files/HD/Applications";

class RunningHostViewControllerTest : public testing::Test {
  protected:
    RunningHostViewControllerTest() {
        fake.bundle.tables["Localizable"] = {{"host_running_title", "Please quit it"},
                                             {"thank_you", "Thank you"}};
        addPage("host_running", "{\\rtf1 Quit %HOSTNAME%.}");
        addPage("proceed", "{\\rtf1 Go on with %PRODUCTNAME%.}");
        model = std::make_shared<RunningHostViewModel>(fake.windowPlatform);
        controller.setModel(model);
    }

    void addPage(const std::string& name, const std::string& contents) {
        fake.bundle.resources[name + ".rtf"] = "/" + name + ".rtf";
        fake.memory.addFile("/" + name + ".rtf", contents);
    }
    HostModel photoshop(const std::string& name = "Adobe Photoshop CC 2019") {
        return PhotoshopHostModel::initWithHostName(fake.platform, name);
    }
    HostModel lightRoom() { return LightRoomHostModel(fake.platform, "Lightroom 5"); }
    /// An application in the payload, by its path below the payload's applications folder.
    void carries(const std::string& path, const std::string& name) {
        fake.memory.addFolder(payload + "/" + path);
        fake.bundles.informationByPath[payload + "/" + path] = {{"CFBundleName", name}};
    }
    void runs(std::vector<std::string> applications) {
        fake.workspace.running = std::move(applications);
    }
    void enter(std::int32_t direction = 1) {
        controller.didEnterWithModel(nullptr, view, &main, direction);
    }
    [[nodiscard]] std::string explanation() const {
        const PlainOrStyledText text = model->informativeText();
        const auto* styled = std::get_if<StyledText>(&text);
        return styled == nullptr ? "not styled" : styled->plainText();
    }

    FakeWindowPlatform fake;
    std::vector<std::string> events;
    FakeMainController main{events};
    std::shared_ptr<FakeView> view = std::make_shared<FakeView>();
    std::shared_ptr<RunningHostViewModel> model;
    RunningHostViewController controller{fake.windowPlatform};
};

// Entering.

TEST_F(RunningHostViewControllerTest, PassesByItselfWhenNothingRuns) {
    main.selected = {photoshop()};
    runs({"Files", "Adobe Photoshop CC 2018"});
    main.recordAnnouncements();
    enter();
    EXPECT_THAT(events, ElementsAre("will enableForward", "did enableForward", "next view"));
    EXPECT_EQ(main.nextViewSender, &controller);
    EXPECT_FALSE(fake.workspace.isObserved());
    EXPECT_TRUE(controller.enableForward());
    EXPECT_FALSE(model->hostIsRunning());
    EXPECT_FALSE(view->hidden);
}

TEST_F(RunningHostViewControllerTest, PassesForwardAlsoWhenTheUserGoesBack) {
    enter(-1);
    EXPECT_THAT(events, ElementsAre("next view"));
}

TEST_F(RunningHostViewControllerTest, MayBeLeftWhileItPassesByItself) {
    main.onNextView = [this] {
        EXPECT_FALSE(view->hidden);
        controller.didProceed(1);
    };
    enter();
    EXPECT_TRUE(view->hidden);
    EXPECT_EQ(view.use_count(), 1);
    EXPECT_FALSE(fake.workspace.isObserved());
}

TEST_F(RunningHostViewControllerTest, StaysWhileASelectedHostRuns) {
    main.selected = {photoshop()};
    runs({"Photoshop CC"});
    main.recordAnnouncements();
    enter();
    EXPECT_THAT(events, ElementsAre("will enableForward", "did enableForward"));
    EXPECT_TRUE(fake.workspace.isObserved());
    EXPECT_FALSE(view->hidden);
    EXPECT_FALSE(controller.enableForward());
    EXPECT_TRUE(controller.enableBackward());
    EXPECT_TRUE(model->hostIsRunning());
    EXPECT_EQ(model->mainLabelText(), "Please quit it");
    EXPECT_EQ(explanation(), "Quit Photoshop.");
}

TEST_F(RunningHostViewControllerTest, AtEntryTheModelIsToldBetweenTheAnnouncements) {
    const Subscription texts = model->observe([this](Observable::Moment moment, std::string_view) {
        const bool will = moment == Observable::Moment::willChange;
        events.push_back(will ? "the texts will change" : "the texts did change");
    });
    main.recordAnnouncements();
    enter();
    EXPECT_THAT(events, ElementsAre("will enableForward", "the texts will change",
                                    "the texts did change", "did enableForward", "next view"));
}

TEST_F(RunningHostViewControllerTest, HostsThatAreNotSelectedMayRun) {
    main.found = {photoshop()};
    main.selected.emplace();
    runs({"Photoshop CC"});
    enter();
    EXPECT_THAT(events, ElementsAre("next view"));
}

TEST_F(RunningHostViewControllerTest, OnlyGoingForwardIsVetoedWhileAHostRuns) {
    main.selected = {photoshop()};
    runs({"Photoshop"});
    enter();
    EXPECT_FALSE(controller.canProceed(1));
    EXPECT_FALSE(controller.canProceed(0));
    EXPECT_TRUE(controller.canProceed(-1));
    runs({});
    ASSERT_FALSE(controller.checkForRunningHosts());
    EXPECT_TRUE(controller.canProceed(1));
    EXPECT_TRUE(controller.canProceed(-1));
}

TEST_F(RunningHostViewControllerTest, BeforeTheFirstEntryBothButtonsAreEnabled) {
    EXPECT_TRUE(controller.enableForward());
    EXPECT_TRUE(controller.enableBackward());
    EXPECT_FALSE(controller.checkForRunningHosts());
}

TEST_F(RunningHostViewControllerTest, TheModelGivenAtEntryIsNotTheOneThatIsShown) {
    const auto other = std::make_shared<RunningHostViewModel>(fake.windowPlatform);
    main.selected = {photoshop()};
    runs({"Photoshop"});
    controller.didEnterWithModel(other, view, &main, 1);
    EXPECT_FALSE(other->hostIsRunning());
    EXPECT_TRUE(model->hostIsRunning());
}

TEST_F(RunningHostViewControllerTest, WithoutAModelTheStepStillHoldsTheUserUp) {
    RunningHostViewController bare(fake.windowPlatform);
    main.selected = {photoshop()};
    runs({"Photoshop"});
    bare.didEnterWithModel(model, view, &main, 1);
    EXPECT_FALSE(bare.enableForward());
    fake.workspace.end("Photoshop");
    EXPECT_TRUE(bare.enableForward());
}

// The order of the checks.

TEST_F(RunningHostViewControllerTest, NamesTheFirstSelectedHostThatRuns) {
    main.selected = {photoshop(), lightRoom(), photoshop("Adobe Photoshop Elements 2018")};
    runs({"Elements Editor", "Lightroom"});
    enter();
    EXPECT_EQ(explanation(), "Quit Lightroom.");
}

TEST_F(RunningHostViewControllerTest, EveryHostThatIsCheckedIsNamedRunningOrNot) {
    main.selected = {photoshop(), lightRoom(), photoshop("Adobe Photoshop Elements 2018")};
    runs({"Lightroom"});
    enter();
    std::vector<std::string> named;
    const Subscription subscription =
        model->observe([&](Observable::Moment moment, std::string_view) {
            if (moment == Observable::Moment::didChange) named.push_back(explanation());
        });
    EXPECT_TRUE(controller.checkForRunningHosts());
    EXPECT_THAT(named, ElementsAre("Quit Photoshop.", "Quit Lightroom."));
}

TEST_F(RunningHostViewControllerTest, AnApplicationOfThePayloadHoldsTheUserUp) {
    main.selected = {photoshop()};
    carries("Tonewright.app", "Tonewright");
    runs({"Tonewright"});
    enter();
    EXPECT_FALSE(controller.enableForward());
    EXPECT_EQ(explanation(), "Quit Tonewright.");
}

TEST_F(RunningHostViewControllerTest, ASelectedHostIsNamedBeforeAnApplicationOfThePayload) {
    main.selected = {photoshop()};
    carries("Tonewright.app", "Tonewright");
    runs({"Tonewright", "Photoshop"});
    enter();
    EXPECT_EQ(explanation(), "Quit Photoshop.");
}

TEST_F(RunningHostViewControllerTest, TheFirstRunningApplicationOfThePayloadIsNamed) {
    carries("First.app", "First");
    carries("Maker/Second.app", "Second");
    carries("Third.app", "Third");
    runs({"Third", "Second"});
    enter();
    EXPECT_EQ(explanation(), "Quit Second.");
}

TEST_F(RunningHostViewControllerTest, AnApplicationOfThePayloadThatDoesNotRunIsNotNamed) {
    main.selected = {photoshop()};
    carries("Tonewright.app", "Tonewright");
    enter();
    model->setHostIsRunning(true);
    EXPECT_EQ(explanation(), "Quit Photoshop.");
}

TEST_F(RunningHostViewControllerTest, HiddenAndNestedApplicationsOfThePayloadDoNotCount) {
    carries(".Hidden.app", "Hidden");
    carries(".cache/Cached.app", "Cached");
    carries("Outer.app/Contents/Inner.app", "Inner");
    carries("Folder", "Folder");
    runs({"Hidden", "Cached", "Inner", "Folder"});
    enter();
    EXPECT_THAT(events, ElementsAre("next view"));
}

TEST_F(RunningHostViewControllerTest, AnApplicationOfThePayloadWithoutANameMatchesNothing) {
    fake.memory.addFolder(payload + "/NoBundle.app");
    fake.memory.addFolder(payload + "/Nameless.app");
    fake.bundles.informationByPath[payload + "/Nameless.app"] = {};
    carries("Empty.app", "");
    carries("Named.app", "Named");
    runs({"Files", ""});
    enter();
    EXPECT_THAT(events, ElementsAre("next view"));
    runs({"Files", "Named"});
    EXPECT_TRUE(controller.checkForRunningHosts());
}

TEST_F(RunningHostViewControllerTest, AnApplicationNamedPhotoshopMustBeginTheName) {
    carries("Photoshop.app", "Photoshop");
    runs({"Adobe Photoshop"});
    enter();
    EXPECT_THAT(events, ElementsAre("next view"));
}

TEST_F(RunningHostViewControllerTest, AnApplicationOfThePayloadNamedLikeAPlaceForANameIsHarmless) {
    carries("Odd.app", "%HOSTNAME%");
    runs({"%HOSTNAME%"});
    enter();
    EXPECT_EQ(explanation(), "Quit %HOSTNAME%.");
}

TEST_F(RunningHostViewControllerTest, CheckingChangesNothingOnTheDisk) {
    carries("Tonewright.app", "Tonewright");
    enter();
    EXPECT_THAT(fake.journal, IsEmpty());
}

// Waiting.

TEST_F(RunningHostViewControllerTest, TheEndOfTheLastHostEnablesContinueAndSaysThankYou) {
    main.selected = {photoshop()};
    runs({"Photoshop"});
    enter();
    main.recordAnnouncements();
    fake.workspace.end("Photoshop");
    EXPECT_THAT(events, ElementsAre("will enableForward", "will mainLabelText", "did enableForward",
                                    "did mainLabelText"));
    EXPECT_TRUE(controller.enableForward());
    EXPECT_EQ(model->mainLabelText(), "Thank you");
    EXPECT_EQ(explanation(), "Go on with Filters 2.");
    EXPECT_THAT(fake.log.lines, ElementsAre("terminated Photoshop\n"));
}

TEST_F(RunningHostViewControllerTest, TheNewTextsAreThereWhenTheChangeIsAnnounced) {
    main.selected = {photoshop()};
    runs({"Photoshop"});
    enter();
    std::vector<std::string> headings;
    const Subscription subscription =
        main.observe([&](Observable::Moment, std::string_view property) {
            if (property == "mainLabelText") headings.push_back(*model->mainLabelText());
        });
    fake.workspace.end("Photoshop");
    EXPECT_THAT(headings, ElementsAre("Please quit it", "Thank you"));
}

TEST_F(RunningHostViewControllerTest, WhileAnotherHostRunsOnlyTheTextsChange) {
    main.selected = {photoshop(), lightRoom()};
    runs({"Photoshop", "Lightroom"});
    enter();
    main.recordAnnouncements();
    fake.workspace.end("Photoshop");
    EXPECT_THAT(events, IsEmpty());
    EXPECT_FALSE(controller.enableForward());
    EXPECT_EQ(model->mainLabelText(), "Please quit it");
    EXPECT_EQ(explanation(), "Quit Lightroom.");
    fake.workspace.end("Lightroom");
    EXPECT_TRUE(controller.enableForward());
    EXPECT_THAT(fake.log.lines, ElementsAre("terminated Photoshop\n", "terminated Lightroom\n"));
}

TEST_F(RunningHostViewControllerTest, EachOfTwoThatEndAtOnceIsLogged) {
    main.selected = {photoshop(), lightRoom()};
    runs({"Photoshop", "Lightroom"});
    enter();
    fake.workspace.endAtOnce({"Photoshop", "Lightroom"});
    EXPECT_THAT(fake.log.lines, ElementsAre("terminated Photoshop\n", "terminated Lightroom\n"));
    EXPECT_TRUE(controller.enableForward());
    EXPECT_EQ(model->mainLabelText(), "Thank you");
}

TEST_F(RunningHostViewControllerTest, TheEndOfAnotherApplicationIsLoggedAndChangesNothing) {
    main.selected = {photoshop()};
    runs({"Files", "Photoshop"});
    enter();
    fake.workspace.end("Files");
    EXPECT_THAT(fake.log.lines, ElementsAre("terminated Files\n"));
    EXPECT_FALSE(controller.enableForward());
    EXPECT_EQ(explanation(), "Quit Photoshop.");
}

TEST_F(RunningHostViewControllerTest, ASecondInstanceOfTheHostStillHoldsTheUserUp) {
    main.selected = {photoshop()};
    runs({"Photoshop", "Photoshop CC"});
    enter();
    fake.workspace.end("Photoshop");
    EXPECT_FALSE(controller.enableForward());
}

TEST_F(RunningHostViewControllerTest, AHostThatIsStartedAgainHoldsTheUserUpAtTheNextEnd) {
    main.selected = {photoshop()};
    runs({"Photoshop", "Files"});
    enter();
    fake.workspace.end("Photoshop");
    ASSERT_TRUE(controller.canProceed(1));
    runs({"Photoshop", "Files"});
    fake.workspace.end("Files");
    EXPECT_FALSE(controller.canProceed(1));
    fake.workspace.end("Photoshop");
    EXPECT_TRUE(controller.canProceed(1));
}

// Leaving.

TEST_F(RunningHostViewControllerTest, LeavingHidesTheViewAndStopsListening) {
    main.selected = {photoshop()};
    runs({"Photoshop"});
    enter();
    controller.didProceed(-1);
    EXPECT_TRUE(view->hidden);
    EXPECT_EQ(view.use_count(), 1);
    EXPECT_FALSE(fake.workspace.isObserved());
    fake.workspace.end("Photoshop");
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

TEST_F(RunningHostViewControllerTest, EnteringAgainChecksAgain) {
    main.selected = {photoshop()};
    runs({"Photoshop"});
    enter();
    controller.didProceed(-1);
    runs({});
    enter();
    EXPECT_THAT(events, ElementsAre("next view"));
    EXPECT_FALSE(model->hostIsRunning());
}

}  // namespace
