#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/HostModel.h"
#include "install/plan/InstallPlan.h"
#include "install/plan/PlannedWrites.h"
#include "tests/install/engine/EngineParts.h"

namespace installer::test {
namespace {

using testing::UnorderedElementsAre;

const std::string makersFolder = "/Library/Application Support/Acme";

class PlannedWritesTest : public testing::Test {
  protected:
    WriteGrant writes(const std::vector<HostModel>& hosts = {}) {
        return plannedWrites(fake.platform, makeInstallPlan(fake.platform, hosts));
    }
    HostModel customFolder(const std::string& path) {
        return UnknownHostModel(fake.platform, path);
    }

    FakePlatform fake;
};

TEST_F(PlannedWritesTest, AlwaysHoldWhatFollowsTheItems) {
    const WriteGrant grant = writes();
    EXPECT_THAT(grant.folders(), UnorderedElementsAre(makersFolder));
    EXPECT_THAT(grant.destinations(),
                UnorderedElementsAre(makersFolder + "/Filters 2 Installer.log",
                                     makersFolder + "/Prismor X/ExternalEditors.csv",
                                     makersFolder + "/entityresolver.guid"));
    EXPECT_TRUE(grant.removableNames().empty());
}

TEST_F(PlannedWritesTest, NameTheMakersAndTheHostsFoldersAsAWholeAndThatOfEachOtherItem) {
    fake.memory.addFile(mirror + "/Applications/Tool.app/Contents/x");
    fake.memory.addFile(mirror + makersFolder + "/Filters 2/Presets/a");
    fake.memory.addFile(payload + "/PHOTOSHOP/Presets/run.jsx");
    fake.memory.addFile(payload + "/PHOTOSHOP_PLUGINS/lib/deep/extra.8bf");
    const WriteGrant grant =
        writes({PhotoshopHostModel::initWithHostName(fake.platform, "Adobe Photoshop CC 2019"),
                customFolder("/My Plug-Ins//")});
    EXPECT_THAT(
        grant.folders(),
        UnorderedElementsAre(makersFolder, "/Applications",
                             "/Library/Application Support/Adobe/Plug-Ins/CC", "/My Plug-Ins"));
    for (const char* path : {"/Applications/Tool.app", "/My Plug-Ins/lib/deep/extra.8bf",
                             "/Applications/Adobe Photoshop CC 2019/Presets/run.jsx"}) {
        EXPECT_TRUE(grant.holds(path)) << path;
    }
    EXPECT_FALSE(grant.holds("/Applications/Other.app"));
    EXPECT_FALSE(grant.holds("/My Plug-Ins/lib"));
}

TEST_F(PlannedWritesTest, HoldNothingOfWhatThePlanRefuses) {
    fake.memory.addFile(payload + "/PHOTOSHOP_PLUGINS/x.service");
    const WriteGrant grant = writes({customFolder("/etc/systemd/system.control")});
    EXPECT_THAT(grant.folders(), UnorderedElementsAre(makersFolder));
    EXPECT_FALSE(grant.holds("/etc/systemd/system.control/x.service"));
    EXPECT_FALSE(grant.leadsThrough("/etc/systemd/system.control"));
}

TEST_F(PlannedWritesTest, LieOnTheTargetVolume) {
    fake.searchPaths.volume = "/Volumes/Other";
    fake.memory.addFile(mirror + "/Tool.app/x");
    EXPECT_THAT(writes().folders(), UnorderedElementsAre("/Volumes/Other"));
}

}  // namespace
}  // namespace installer::test
