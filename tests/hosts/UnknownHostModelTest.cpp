#include <gtest/gtest.h>

#include "hosts/UnknownHostModel.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

namespace {

TEST(UnknownHostModel, StartsWithThePlugInOnlyAndUnselected) {
    FakePlatform fake;
    const UnknownHostModel host(fake.platform, "/My Plug-Ins");
    EXPECT_EQ(host.plugInPath(), "/My Plug-Ins");
    EXPECT_EQ(host.scriptsPath(), "");
    EXPECT_EQ(host.panelsPath(), "");
    EXPECT_TRUE(host.shouldInstallPlugIns());
    EXPECT_FALSE(host.shouldInstallScripts());
    EXPECT_FALSE(host.shouldInstallPanels());
    EXPECT_FALSE(host.hostIsSelected());
}

TEST(UnknownHostModel, IsInstalledEvenWithoutAFolder) {
    FakePlatform fake;
    const UnknownHostModel host(fake.platform, "");
    EXPECT_TRUE(host.hostIsInstalled());
    EXPECT_EQ(host.plugInPath(), "");
}

TEST(UnknownHostModel, ThePickedFolderStaysAsPickedWithATargetVolume) {
    FakePlatform fake;
    fake.searchPaths.volume = "/Volumes/Other";
    EXPECT_EQ(UnknownHostModel(fake.platform, "/My Plug-Ins").plugInPath(), "/My Plug-Ins");
}

TEST(UnknownHostModel, IsNamedByTheText) {
    FakePlatform fake;
    const UnknownHostModel host(fake.platform, "/My Plug-Ins");
    EXPECT_EQ(host.hostName(), "");
    fake.bundle.tables["Localizable"]["custom_path"] = "Eigener Ordner";
    EXPECT_EQ(host.hostName(), "Eigener Ordner");
}

TEST(UnknownHostModel, TakesEveryFolderAndChoice) {
    FakePlatform fake;
    UnknownHostModel host(fake.platform, "");
    host.setPlugInPath("/Plug-Ins");
    host.setScriptsPath("/Scripts");
    host.setPanelsPath("/Panels");
    host.setShouldInstallPlugIns(false);
    host.setShouldInstallScripts(true);
    host.setShouldInstallPanels(true);
    host.setHostIsSelected(true);
    EXPECT_EQ(host.plugInPath(), "/Plug-Ins");
    EXPECT_EQ(host.scriptsPath(), "/Scripts");
    EXPECT_EQ(host.panelsPath(), "/Panels");
    EXPECT_FALSE(host.shouldInstallPlugIns());
    EXPECT_TRUE(host.shouldInstallScripts());
    EXPECT_TRUE(host.shouldInstallPanels());
    EXPECT_TRUE(host.hostIsSelected());
}

}  // namespace

}  // namespace installer::test
