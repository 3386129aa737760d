#include <gtest/gtest.h>

#include "hosts/ApertureHostModel.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

namespace {

constexpr const char* apertureFolder = "/Users/tester/Library/Application Support/Aperture";

TEST(ApertureHostModel, IsInstalledWhenTheFolderOfItsPlugInFolderExists) {
    FakePlatform fake;
    fake.memory.addFolder(apertureFolder);
    EXPECT_TRUE(ApertureHostModel(fake.platform, "Aperture").hostIsInstalled());
}

TEST(ApertureHostModel, AnyItemInPlaceOfThatFolderCounts) {
    FakePlatform fake;
    fake.memory.addFile(apertureFolder);
    EXPECT_TRUE(ApertureHostModel(fake.platform, "Aperture").hostIsInstalled());
}

TEST(ApertureHostModel, IsNotInstalledWithoutThatFolder) {
    FakePlatform fake;
    fake.memory.addFolder("/Users/tester/Library/Application Support");
    EXPECT_FALSE(ApertureHostModel(fake.platform, "Aperture").hostIsInstalled());
}

TEST(ApertureHostModel, IsNotInstalledForAUserWithoutHome) {
    FakePlatform fake;
    fake.searchPaths.home.reset();
    EXPECT_FALSE(ApertureHostModel(fake.platform, "Aperture").hostIsInstalled());
}

TEST(ApertureHostModel, HasANameASelectionAndAnApplication) {
    FakePlatform fake;
    ApertureHostModel host(fake.platform, "Aperture 3");
    EXPECT_EQ(host.hostName(), "Aperture 3");
    EXPECT_EQ(host.appPath(), "/Applications/Aperture");
    EXPECT_EQ(host.plugInPath(), "");
    EXPECT_EQ(host.scriptsPath(), "");
    EXPECT_EQ(host.panelsPath(), "");
    EXPECT_TRUE(host.hostIsSelected());
    host.setHostIsSelected(false);
    EXPECT_FALSE(host.hostIsSelected());
}

TEST(ApertureHostModel, ItsApplicationLiesOnTheTargetVolume) {
    FakePlatform fake;
    fake.searchPaths.volume = "/Volumes/Other";
    EXPECT_EQ(ApertureHostModel(fake.platform, "Aperture").appPath(),
              "/Volumes/Other/Applications/Aperture");
}

}  // namespace

}  // namespace installer::test
