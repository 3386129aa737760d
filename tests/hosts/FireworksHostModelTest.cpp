#include <gtest/gtest.h>

#include "hosts/FireworksHostModel.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

namespace {

constexpr const char* plugInFolder = "/Applications/Adobe Fireworks CS6/Plug-Ins";

TEST(FireworksHostModel, HasOneFolderForPlugInsPanelsAndScripts) {
    FakePlatform fake;
    const FireworksHostModel host(fake.platform, "Adobe Fireworks CS6");
    EXPECT_EQ(host.hostName(), "Adobe Fireworks CS6");
    EXPECT_EQ(host.plugInPath(), plugInFolder);
    EXPECT_EQ(host.panelsPath(), plugInFolder);
    EXPECT_EQ(host.scriptsPath(), plugInFolder);
}

TEST(FireworksHostModel, ItsFolderLiesOnTheTargetVolume) {
    FakePlatform fake;
    fake.searchPaths.volume = "/Volumes/Other";
    EXPECT_EQ(FireworksHostModel(fake.platform, "Adobe Fireworks CS6").plugInPath(),
              "/Volumes/Other/Applications/Adobe Fireworks CS6/Plug-Ins");
}

TEST(FireworksHostModel, LooksEachTimeWhetherItIsInstalled) {
    FakePlatform fake;
    const FireworksHostModel host(fake.platform, "Adobe Fireworks CS6");
    EXPECT_FALSE(host.hostIsInstalled());
    fake.memory.addFolder(plugInFolder);
    EXPECT_TRUE(host.hostIsInstalled());
    ASSERT_FALSE(fake.memory.remove(plugInFolder));
    EXPECT_FALSE(host.hostIsInstalled());
}

TEST(FireworksHostModel, IsInstalledWhereItsPlugInFolderWasMoved) {
    FakePlatform fake;
    fake.memory.addFolder("/Elsewhere");
    FireworksHostModel host(fake.platform, "Adobe Fireworks CS6");
    host.setPlugInPath("/Elsewhere");
    EXPECT_EQ(host.plugInPath(), "/Elsewhere");
    EXPECT_TRUE(host.hostIsInstalled());
}

TEST(FireworksHostModel, TakesAPanelFolderAndAChoiceOfPlugIns) {
    FakePlatform fake;
    FireworksHostModel host(fake.platform, "Adobe Fireworks CS6");
    host.setPanelsPath("/Panels");
    EXPECT_EQ(host.panelsPath(), "/Panels");
    EXPECT_TRUE(host.shouldInstallPlugIns());
    host.setShouldInstallPlugIns(false);
    EXPECT_FALSE(host.shouldInstallPlugIns());
}

TEST(FireworksHostModel, IgnoresScriptsAndPanels) {
    FakePlatform fake;
    FireworksHostModel host(fake.platform, "Adobe Fireworks CS6");
    host.setScriptsPath("/Scripts");
    host.setShouldInstallScripts(true);
    host.setShouldInstallPanels(true);
    EXPECT_EQ(host.scriptsPath(), plugInFolder);
    EXPECT_FALSE(host.shouldInstallScripts());
    EXPECT_FALSE(host.shouldInstallPanels());
}

}  // namespace

}  // namespace installer::test
