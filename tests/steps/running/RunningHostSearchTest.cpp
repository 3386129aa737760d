#include <string>

#include <gtest/gtest.h>

#include "hosts/HostModel.h"
#include "steps/running/RunningHostViewController.h"
#include "tests/support/FakeWindow.h"

namespace {

using namespace installer;
using namespace installer::test;

/// Which names of running applications count for which host.
class RunningHostSearch : public testing::Test {
  protected:
    HostModel photoshop(const std::string& name = "Adobe Photoshop CC 2019") {
        return PhotoshopHostModel::initWithHostName(fake.platform, name);
    }

    FakeWindowPlatform fake;
    RunningHostViewController controller{fake.windowPlatform};
};

TEST_F(RunningHostSearch, EachKindOfHostHasItsWord) {
    const auto word = RunningHostViewController::hostAppSearchString;
    EXPECT_EQ(word(UnknownHostModel(fake.platform, "/Elements")), "Photoshop");
    EXPECT_EQ(word(photoshop()), "Photoshop");
    EXPECT_EQ(word(photoshop("Adobe Photoshop Elements 2018")), "Elements");
    EXPECT_EQ(word(photoshop("Adobe Photoshop elements 2018")), "Photoshop");
    EXPECT_EQ(word(LightRoomHostModel(fake.platform, "Lightroom 5")), "Lightroom");
    EXPECT_EQ(word(ApertureHostModel(fake.platform, "Aperture 3")), "Aperture");
}

TEST_F(RunningHostSearch, FireworksIsSearchedForAsAperture) {
    EXPECT_EQ(RunningHostViewController::hostAppSearchString(
                  FireworksHostModel(fake.platform, "Adobe Fireworks CS6")),
              "Aperture");
}

TEST_F(RunningHostSearch, ACustomFolderNamedElementsIsStillSearchedForAsPhotoshop) {
    fake.bundle.tables["Localizable"]["custom_path"] = "Elements";
    EXPECT_EQ(RunningHostViewController::hostAppSearchString(
                  UnknownHostModel(fake.platform, "/Elements")),
              "Photoshop");
}

struct RunningRow {
    std::string name;
    std::string word;
    std::string application;
    bool counts = false;
};

class RunningHostSearchApplication : public testing::TestWithParam<RunningRow> {};

TEST_P(RunningHostSearchApplication, CountsByItsName) {
    FakeWindowPlatform fake;
    const RunningHostViewController controller(fake.windowPlatform);
    fake.workspace.running = {"Files", GetParam().application, ""};
    EXPECT_EQ(controller.isHostRunning(GetParam().word), GetParam().counts);
}

INSTANTIATE_TEST_SUITE_P(
    Names, RunningHostSearchApplication,
    testing::Values(
        RunningRow{"PhotoshopAtTheStart", "Photoshop", "Photoshop CC", true},
        RunningRow{"PhotoshopAlone", "Photoshop", "Photoshop", true},
        RunningRow{"PhotoshopAfterTheMaker", "Photoshop", "Adobe Photoshop CC 2018", false},
        RunningRow{"PhotoshopTwice", "Photoshop", "My Photoshop Photoshop", false},
        RunningRow{"PhotoshopInOtherLetterCase", "Photoshop", "photoshop", false},
        RunningRow{"PhotoshopInstaller", "Photoshop", "Photoshop Installer", true},
        RunningRow{"PhotoshopCountsElementsToo", "Photoshop", "Photoshop Elements 2018", true},
        RunningRow{"ElementsAnywhere", "Elements", "Photoshop Elements 2018", true},
        RunningRow{"ElementsAfterTheMaker", "Elements", "Adobe Photoshop Elements Editor", true},
        RunningRow{"ElementsInstaller", "Elements", "Elements Installer", false},
        RunningRow{"Lightroom", "Lightroom", "Adobe Lightroom", true},
        RunningRow{"LightroomInstaller", "Lightroom", "Lightroom Installer", false},
        RunningRow{"InstallerBeforeTheWord", "Lightroom", "Installer of Lightroom", false},
        RunningRow{"InstallerInOtherLetterCase", "Lightroom", "Lightroom installer", true},
        RunningRow{"PartOfAWord", "Aperture", "Apertures", true},
        RunningRow{"SomethingElse", "Aperture", "Photos", false},
        RunningRow{"TheEmptyWord", "", "Photos", false}),
    [](const auto& row) { return row.param.name; });

TEST_F(RunningHostSearch, ALaterApplicationCountsAfterOnesThatDoNot) {
    fake.workspace.running = {"Adobe Photoshop CC 2018", "Photoshop Installer"};
    EXPECT_TRUE(controller.isHostRunning("Photoshop"));
    fake.workspace.running = {"Lightroom Installer", "Lightroom"};
    EXPECT_TRUE(controller.isHostRunning("Lightroom"));
    fake.workspace.running = {};
    EXPECT_FALSE(controller.isHostRunning("Lightroom"));
}

}  // namespace
