#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "steps/aperture/ApertureRunController.h"
#include "steps/aperture/ApertureRunModel.h"
#include "tests/support/FakeMainController.h"
#include "tests/support/FakeWindow.h"

namespace {

using namespace installer;
using namespace installer::test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string standAlone = "/Installer.app/Contents/SharedSupport/Standalone";

class ApertureRunControllerTest : public testing::Test {
  protected:
    void enter() { controller.didEnterWithModel(model, view, &main, 1); }

    FakeWindowPlatform fake;
    std::vector<std::string> events;
    FakeMainController main{events};
    std::shared_ptr<FakeView> view = std::make_shared<FakeView>();
    std::shared_ptr<ApertureRunModel> model =
        std::make_shared<ApertureRunModel>(fake.windowPlatform);
    ApertureRunController controller{fake.windowPlatform};
};

TEST_F(ApertureRunControllerTest, BothButtonsMayAlwaysBePressed) {
    EXPECT_TRUE(controller.enableForward());
    EXPECT_TRUE(controller.enableBackward());
    EXPECT_TRUE(controller.canProceed(1));
    EXPECT_TRUE(controller.canProceed(-1));
}

TEST_F(ApertureRunControllerTest, EnteringShowsTheViewAndAnnouncesWhatItShows) {
    main.recordAnnouncements();
    const Subscription subscription = model->observe([this](Observable::Moment moment,
                                                            std::string_view property) {
        events.push_back((moment == Observable::Moment::willChange ? "model will " : "model did ") +
                         std::string(property));
    });
    enter();
    EXPECT_FALSE(view->hidden);
    EXPECT_THAT(events, ElementsAre("will informativeText", "will successfulInstall",
                                    "model will backgroundImage", "did informativeText",
                                    "did successfulInstall", "model did backgroundImage"));
    EXPECT_THAT(fake.journal, IsEmpty());
}

TEST_F(ApertureRunControllerTest, LeavingStartsTheInstalledApplicationOnceAndEndsIt) {
    fake.memory.addFolder(standAlone + "/Tonewright.app");
    fake.memory.addFolder(standAlone + "/Another.app");
    fake.memory.addFolder("/Applications/Tonewright.app");
    enter();
    fake.clock.duringSleep = [this] { fake.journal.emplace_back("sleep"); };
    controller.didProceed(1);
    EXPECT_THAT(fake.journal, ElementsAre("launch /Applications/Tonewright.app -no-ui", "sleep",
                                          "terminate /Applications/Tonewright.app"));
    EXPECT_THAT(fake.clock.sleeps, ElementsAre(2s));
}

TEST_F(ApertureRunControllerTest, TheApplicationOnTheTargetVolumeIsStarted) {
    fake.searchPaths.volume = "/Volumes/Other";
    fake.memory.addFolder(standAlone + "/Tonewright.app");
    fake.memory.addFolder("/Volumes/Other/Applications/Tonewright.app");
    enter();
    controller.didProceed(1);
    EXPECT_THAT(fake.journal,
                ElementsAre("launch /Volumes/Other/Applications/Tonewright.app -no-ui",
                            "terminate /Volumes/Other/Applications/Tonewright.app"));
}

TEST_F(ApertureRunControllerTest, AHiddenFirstEntryIsTheOneThatCounts) {
    fake.memory.addFile(standAlone + "/.listing");
    fake.memory.addFolder(standAlone + "/Tonewright.app");
    fake.workspace.canLaunch = false;
    enter();
    controller.didProceed(1);
    EXPECT_THAT(fake.journal, ElementsAre("launch /Applications/.listing -no-ui"));
}

TEST_F(ApertureRunControllerTest, AFailedLaunchIsNeitherWaitedForNorEnded) {
    fake.memory.addFolder(standAlone + "/Tonewright.app");
    fake.workspace.canLaunch = false;
    enter();
    controller.didProceed(1);
    EXPECT_THAT(fake.journal, ElementsAre("launch /Applications/Tonewright.app -no-ui"));
    EXPECT_THAT(fake.clock.sleeps, IsEmpty());
    EXPECT_TRUE(view->hidden);
}

TEST_F(ApertureRunControllerTest, WithoutAnApplicationNothingIsStarted) {
    fake.memory.addFolder(standAlone);
    enter();
    controller.didProceed(1);
    EXPECT_THAT(fake.journal, IsEmpty());
    EXPECT_TRUE(view->hidden);
}

TEST_F(ApertureRunControllerTest, WithoutTheFolderNothingIsStarted) {
    enter();
    controller.didProceed(1);
    EXPECT_THAT(fake.journal, IsEmpty());
}

TEST_F(ApertureRunControllerTest, TheViewIsShownUntilTheApplicationHasEnded) {
    fake.memory.addFolder(standAlone + "/Tonewright.app");
    fake.memory.addFolder("/Applications/Tonewright.app");
    enter();
    fake.clock.duringSleep = [this] { EXPECT_FALSE(view->hidden); };
    controller.didProceed(1);
    EXPECT_THAT(fake.clock.sleeps, ElementsAre(2s));
    EXPECT_TRUE(view->hidden);
}

TEST_F(ApertureRunControllerTest, LeavingLetsGoOfModelAndView) {
    enter();
    controller.didProceed(-1);
    EXPECT_EQ(model.use_count(), 1);
    EXPECT_EQ(view.use_count(), 1);
    EXPECT_TRUE(view->hidden);
}

}  // namespace
