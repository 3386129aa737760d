#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/MainWindow.h"
#include "steps/completion/RegisterController.h"
#include "steps/completion/RegisterModel.h"
#include "steps/hosts/HostsController.h"
#include "steps/hosts/HostsModel.h"
#include "steps/install/InstallFilesController.h"
#include "steps/install/InstallFilesModel.h"
#include "steps/licence/LicenseController.h"
#include "steps/licence/LicenseModel.h"
#include "steps/running/RunningHostViewController.h"
#include "steps/running/RunningHostViewModel.h"
#include "tests/app/Announcements.h"
#include "tests/app/Wizard.h"
#include "wizard/InstallStateController.h"

namespace installer::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class SetupControllerStartTest : public WizardTest {
  protected:
    template <class Controller, class Model>
    void expectStep(std::int32_t step, const std::string& viewName) {
        EXPECT_NE(std::dynamic_pointer_cast<Controller>(wizard->getControllerForStep(step)),
                  nullptr);
        EXPECT_NE(std::dynamic_pointer_cast<Model>(wizard->getModelForStep(step)), nullptr);
        EXPECT_EQ(wizard->getViewForStep(step), window().views[viewName]);
    }
};

TEST_F(SetupControllerStartTest, BeforeItHasItsWindowItAnswersForNoStep) {
    make();
    EXPECT_EQ(textOf("mainLabelText"), "???");
    EXPECT_EQ(textOf("informativeText"), "");
    EXPECT_EQ(textOf("goForwardText"), "Continue");
    EXPECT_EQ(textOf("goBackwardsText"), "Quit");
    EXPECT_FALSE(flagOf("enableForward"));
    EXPECT_FALSE(flagOf("enableBackward"));
    EXPECT_FALSE(flagOf("installationFailed"));
    EXPECT_EQ(valueOf<Image>("backgroundImage"), Image());
    EXPECT_EQ(wizard->getViewForStep(0), nullptr);
}

TEST_F(SetupControllerStartTest, BeforeItHasItsWindowItsActionsDoNothing) {
    make();
    for (const char* action :
         {"nextView", "previousView", "subViewButtonPress", "quit", "hideWindow"}) {
        wizard->performAction(action, nullptr);
    }
    EXPECT_EQ(textOf("mainLabelText"), "???");
    EXPECT_THAT(fake.alerts.shown, IsEmpty());
}

TEST_F(SetupControllerStartTest, StartsWithTheOptionsThatNobodyHasChosen) {
    make();
    EXPECT_FALSE(wizard->isCustomInstallAllowed());
    EXPECT_FALSE(wizard->isCustomInstallChosen());
    EXPECT_TRUE(wizard->customInstallRecommended());
    EXPECT_FALSE(wizard->canConfigurePrismorExternalEditors());
    EXPECT_FALSE(wizard->shouldConfigurePrismorExternalEditors());
}

TEST_F(SetupControllerStartTest, MakesModelsAndControllersInAFixedOrder) {
    static const std::set<std::string> tellingTexts = {"continue", "license_instructions",
                                                       "copy_files_title", "select_host"};
    fake.bundle.whenAsked = [this](const std::string& what) {
        if (tellingTexts.contains(what)) events.push_back(what);
    };
    fake.searchPaths.whenLoginNameIsAsked = [this] { events.emplace_back("login name"); };
    make();
    EXPECT_THAT(events, ElementsAre("continue", "license_instructions", "copy_files_title",
                                    "login name", "select_host", "continue"));
}

TEST_F(SetupControllerStartTest, FollowsTheStateOnlyWhenAllElseIsMade) {
    Subscription earlier;
    // Of those who follow the state, this one is told first when it was there first.
    fake.bundle.whenAsked = [&](const std::string& what) {
        if (what != "finish") return;
        earlier = fake.notifications.observe(
            "stateDidChange", [this](const Notification&) { events.emplace_back("state"); });
    };
    make();
    fake.bundle.whenAsked = nullptr;
    recordAnnouncements();
    wizard->awakeFromNib(fake.interfaces.load("MainWindow", *wizard));
    EXPECT_THAT(events, Contains("state").Times(1));
    EXPECT_EQ(events.front(), "state");
}

TEST_F(SetupControllerStartTest, ASlowDiscoveryIsOverBeforeTheWindowIsMade) {
    addPhotoshop("Adobe Photoshop CS6");
    const std::string pathsFile = "/Users/tester/Library/Preferences/Adobe Photoshop CS6 Paths";
    const std::string contents = fake.memory.contents(pathsFile);
    fake.memory.removeAsAdministrator(pathsFile);
    fake.memory.addFolder(pathsFile);
    fake.clock.duringSleep = [&] {
        EXPECT_TRUE(fake.interfaces.loaded.empty());
        if (fake.clock.sleeps.size() < 3) return;
        fake.memory.removeAsAdministrator(pathsFile);
        fake.memory.addFile(pathsFile, contents);
    };
    start();
    EXPECT_THAT(fake.clock.sleeps, SizeIs(3));
    EXPECT_EQ(window().windows["mainWindow"]->shown, 1);
    EXPECT_THAT(wizard->foundHosts(), SizeIs(1));
}

TEST_F(SetupControllerStartTest, RegistersEveryStepUnderItsNumber) {
    start();
    expectStep<LicenseController, LicenseModel>(0, "licenseView");
    expectStep<HostsController, HostsModel>(1, "hostsView");
    expectStep<RunningHostViewController, RunningHostViewModel>(2, "rtfView");
    expectStep<InstallFilesController, InstallFilesModel>(3, "installFilesView");
    expectStep<RegisterController, RegisterModel>(4, "registerView");
    for (const std::int32_t end : {-1, 5}) {
        EXPECT_EQ(wizard->getControllerForStep(end), nullptr);
        EXPECT_EQ(wizard->getModelForStep(end), nullptr);
        EXPECT_EQ(wizard->getViewForStep(end), nullptr);
        EXPECT_EQ(wizard->getIndicatorForStep(end), nullptr);
    }
}

TEST_F(SetupControllerStartTest, RegistersTheInstallationBeforeTheStepsInFrontOfIt) {
    start();
    EXPECT_THAT(
        view("dynamicView").subviews,
        ElementsAre(wizard->getViewForStep(0), wizard->getViewForStep(3), wizard->getViewForStep(1),
                    wizard->getViewForStep(2), wizard->getViewForStep(4)));
}

TEST_F(SetupControllerStartTest, TheListOfStepsShowsEachStepsLabel) {
    start();
    EXPECT_THAT(fake.interfaces.loaded["Step Indicator"], SizeIs(5));
    Lines labels;
    for (std::size_t step = 0; step < 5; ++step) {
        labels.push_back(row(step).textFields["label"]->text);
    }
    EXPECT_THAT(labels, ElementsAre("Licence", "Hosts", "Running", "Copy", "Done"));
}

TEST_F(SetupControllerStartTest, EntersTheLicence) {
    start();
    EXPECT_THAT(visibleViews(), ElementsAre("licenseView"));
    EXPECT_THAT(highlighted(), ElementsAre(0));
    EXPECT_EQ(textOf("mainLabelText"), "Read this");
    EXPECT_EQ(textOf("goForwardText"), "Continue");
    EXPECT_EQ(textOf("goBackwardsText"), "Quit");
    EXPECT_TRUE(flagOf("enableForward"));
    EXPECT_TRUE(flagOf("enableBackward"));
}

TEST_F(SetupControllerStartTest, ShowsTheWindowOnceInTheMiddleOfTheScreen) {
    start();
    EXPECT_EQ(window().windows["mainWindow"]->shown, 1);
    EXPECT_EQ(timesClosed(), 0);
}

TEST_F(SetupControllerStartTest, ShowsTheWindowWhenAllElseIsDone) {
    const auto mainWindow = std::make_shared<FakeWindow>();
    bool isOptionStored = false;
    mainWindow->whenShown = [&] {
        events.emplace_back("shown");
        isOptionStored = !fake.preferences.values.empty();
    };
    fake.interfaces.prepared["MainWindow"].windows["mainWindow"] = mainWindow;
    make();
    recordAnnouncements();
    wizard->awakeFromNib(fake.interfaces.load("MainWindow", *wizard));
    EXPECT_EQ(events.back(), "shown");
    EXPECT_TRUE(isOptionStored);
}

TEST_F(SetupControllerStartTest, OwnsItsWindowsDescription) {
    start();
    EXPECT_EQ(window().owner, wizard.get());
}

TEST_F(SetupControllerStartTest, AnnouncesTheFirstStepAndThenWhatTheWindowShows) {
    make();
    recordAnnouncements();
    wizard->awakeFromNib(fake.interfaces.load("MainWindow", *wizard));
    EXPECT_THAT(
        events,
        ElementsAreArray(joined({announcedBefore,
                                 announcedAfter,
                                 {"will licenseText", "did licenseText", "will foundHosts",
                                  "did foundHosts", "will informativeText", "did informativeText",
                                  "will copyInProgress", "did copyInProgress", "will windowTitle",
                                  "did windowTitle", "will mainLabelText", "did mainLabelText"}})));
}

TEST_F(SetupControllerStartTest, MakingTheControllerAnnouncesAndShowsNothing) {
    const Subscription changes = fake.notifications.observe(
        "stateDidChange", [this](const Notification&) { events.emplace_back("state"); });
    make();
    EXPECT_THAT(events, IsEmpty());
    EXPECT_TRUE(fake.interfaces.loaded.empty());
    EXPECT_THAT(fake.preferences.values, IsEmpty());
}

TEST_F(SetupControllerStartTest, AMissingContinueTextIsNoticed) {
    fake.bundle.tables.clear();
    start();
    EXPECT_EQ(textOf("goForwardText"), "can't find");
    EXPECT_EQ(textOf("goBackwardsText"), "");
}

TEST_F(SetupControllerStartTest, TheInstallStepShowsHowFarItIs) {
    addPhotoshop("Adobe Photoshop CS6");
    start();
    goTo(2);
    EXPECT_THAT(window().progressIndicators["installProgress"]->fractions, Not(IsEmpty()));
}

TEST_F(SetupControllerStartTest, FollowsTheStateWhoeverPostsIt) {
    start();
    wizard->nextView(nullptr);
    ASSERT_THAT(highlighted(), ElementsAre(1));
    InstallStateController(fake.platform, 0).gotoStartingState(nullptr);
    EXPECT_THAT(highlighted(), ElementsAre(0, 1));
}

TEST_F(SetupControllerStartTest, AfterItsEndItFollowsNothing) {
    start();
    goTo(1);
    wizard.reset();
    InstallStateController(fake.platform, 0).gotoStartingState(nullptr);
    EXPECT_THAT(highlighted(), ElementsAre(1));
}

/// Descriptions that lack something which the wizard survives.
class SetupControllerStartWithAnIncompleteWindow : public WizardTest,
                                                   public testing::WithParamInterface<const char*> {
};

TEST_P(SetupControllerStartWithAnIncompleteWindow, LeadsThroughTheWizard) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.interfaces.prepared["MainWindow"].missing = {GetParam()};
    make();
    auto interface = fake.interfaces.load("MainWindow", *wizard);
    EXPECT_EQ(missingPartOfMainWindow(*interface), std::nullopt);
    wizard->awakeFromNib(std::move(interface));
    goTo(2);
    EXPECT_EQ(textOf("mainLabelText"), "Finished");
    EXPECT_TRUE(flagOf("successfulInstall"));
    wizard->nextView(nullptr);
    EXPECT_EQ(timesClosed(), 1);
}

INSTANTIATE_TEST_SUITE_P(Without, SetupControllerStartWithAnIncompleteWindow,
                         testing::Values("stepIndicatorView", "licenseView", "hostsView", "rtfView",
                                         "installFilesView", "registerView", "foundHostsController",
                                         "installProgress"),
                         [](const auto& row) { return std::string(row.param); });

TEST_F(SetupControllerStartTest, WithoutRowsTheWizardWorks) {
    fake.interfaces.unloadable = {"Step Indicator"};
    start();
    wizard->nextView(nullptr);
    EXPECT_EQ(textOf("mainLabelText"), "Select");
    EXPECT_EQ(wizard->getIndicatorForStep(0), nullptr);
}

/// Parts without which the window is of no use.
class SetupControllerStartWithAnUnusableWindow : public WizardTest,
                                                 public testing::WithParamInterface<const char*> {};

TEST_P(SetupControllerStartWithAnUnusableWindow, NamesWhatIsMissing) {
    fake.interfaces.prepared["MainWindow"].missing = {GetParam()};
    make();
    const auto interface = fake.interfaces.load("MainWindow", *wizard);
    EXPECT_EQ(missingPartOfMainWindow(*interface), GetParam());
}

TEST_P(SetupControllerStartWithAnUnusableWindow, StillPerformsActions) {
    fake.interfaces.prepared["MainWindow"].missing = {GetParam()};
    start();
    wizard->performAction("hideWindow", nullptr);
    wizard->performAction("quit", nullptr);
    wizard->previousView(nullptr);
    EXPECT_EQ(textOf("mainLabelText"), "???");
}

INSTANTIATE_TEST_SUITE_P(Without, SetupControllerStartWithAnUnusableWindow,
                         testing::Values("mainWindow", "dynamicView", "forwardButton",
                                         "backwardButton"),
                         [](const auto& row) { return std::string(row.param); });

}  // namespace
}  // namespace installer::test
