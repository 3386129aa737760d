#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/HostModel.h"
#include "install/engine/HostPayload.h"
#include "install/plan/InstallPlan.h"
#include "tests/install/engine/EngineParts.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string application = "/Applications/Adobe Photoshop CC 2019";
const std::string plugInFolder = "/Library/Application Support/Adobe/Plug-Ins/CC";

class HostPayloadTest : public testing::Test {
  protected:
    void copy(const std::string& source, const std::string& to) {
        HostPayload(fake.platform, engine.installer).copyHostFilesFrom(source, to);
    }
    void install(const HostModel& host) {
        HostPayload(fake.platform, engine.installer).installFiles(host);
    }
    void addPayloadOfEveryKind() {
        memory.addFile(payload + "/PHOTOSHOP/Presets/run.jsx");
        memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x");
        memory.addFile(payload + "/LIGHTROOM/Modules/F.lrplugin/x");
    }

    EngineParts engine;
    FakePlatform& fake = engine.fake;
    MemoryFileManager& memory = fake.memory;
    std::vector<std::string>& installed = engine.run.installedPaths;
};

TEST_F(HostPayloadTest, PhotoshopGetsItsApplicationFilesAndThenThePlugIn) {
    addPayloadOfEveryKind();
    install(PhotoshopHostModel::initWithHostName(fake.platform, "Adobe Photoshop CC 2019"));
    EXPECT_THAT(installed,
                ElementsAre(application + "/Presets/run.jsx", plugInFolder + "/F.plugin"));
}

TEST_F(HostPayloadTest, AHostThatIsNotSelectedIsInstalledIntoWhenTheCallerSaysSo) {
    addPayloadOfEveryKind();
    auto host = PhotoshopHostModel::initWithHostName(fake.platform, "Adobe Photoshop CC 2019");
    host.setHostIsSelected(false);
    install(host);
    EXPECT_FALSE(installed.empty());
}

TEST_F(HostPayloadTest, TwoHostsThatShareAFolderListItsPathsTwice) {
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x");
    install(PhotoshopHostModel::initWithHostName(fake.platform, "Adobe Photoshop CC 2019"));
    install(PhotoshopHostModel::initWithHostName(fake.platform, "Adobe Photoshop CC 2020"));
    EXPECT_THAT(installed, ElementsAre(plugInFolder + "/F.plugin", plugInFolder + "/F.plugin"));
}

TEST_F(HostPayloadTest, LightroomGetsItsFilesInTheUsersSupportFolder) {
    addPayloadOfEveryKind();
    install(LightRoomHostModel(fake.platform, "Adobe Lightroom"));
    EXPECT_THAT(
        installed,
        ElementsAre(
            "/Users/tester/Library/Application Support/Adobe/Lightroom/Modules/F.lrplugin"));
}

TEST_F(HostPayloadTest, WithoutAHomeFolderLightroomGetsNothing) {
    addPayloadOfEveryKind();
    fake.searchPaths.home.reset();
    install(LightRoomHostModel(fake.platform, "Adobe Lightroom"));
    EXPECT_THAT(engine.operations(), IsEmpty());
}

TEST_F(HostPayloadTest, ACustomFolderGetsThePlugIn) {
    addPayloadOfEveryKind();
    install(UnknownHostModel(fake.platform, "/My Plug-Ins/"));
    EXPECT_THAT(installed, ElementsAre("/My Plug-Ins/F.plugin"));
}

TEST_F(HostPayloadTest, ACustomFolderThatWasNotPickedGetsNothing) {
    addPayloadOfEveryKind();
    install(UnknownHostModel(fake.platform, ""));
    EXPECT_THAT(engine.operations(), IsEmpty());
}

TEST_F(HostPayloadTest, TheOtherKindsGetNothing) {
    addPayloadOfEveryKind();
    install(ApertureHostModel(fake.platform, "Aperture"));
    install(FireworksHostModel(fake.platform, "Adobe Fireworks CS6"));
    EXPECT_THAT(engine.operations(), IsEmpty());
}

TEST_F(HostPayloadTest, FilesAndPackagesAreMirroredOneByOneWithTheirFolders) {
    memory.addFile("/s/a");
    memory.addFile("/s/deep/er/b");
    memory.addFile("/s/deep/T.plugin/x");
    memory.addFolder("/s/empty");
    memory.addFolder("/to");
    copy("/s", "/to");
    EXPECT_THAT(
        engine.operations(),
        ElementsAre(
            "copy /s/a /to/a", "/usr/sbin/chown -R tester:admin /to/a", "/bin/chmod -R 0775 /to/a",
            "createFolders /to/deep 0775", "setAttributes /to/deep tester:admin 0775",
            "createFolders /to/deep/er 0775", "setAttributes /to/deep/er tester:admin 0775",
            "copy /s/deep/er/b /to/deep/er/b", "/usr/sbin/chown -R tester:admin /to/deep/er/b",
            "/bin/chmod -R 0775 /to/deep/er/b", "copy /s/deep/T.plugin /to/deep/T.plugin",
            "/usr/sbin/chown -R tester:admin /to/deep/T.plugin",
            "/bin/chmod -R 0775 /to/deep/T.plugin"));
}

TEST_F(HostPayloadTest, HiddenEntriesLinksAndSpecialFilesAreLeftOut) {
    memory.addFile("/s/.hidden");
    memory.addFile("/s/.folder/file");
    memory.addLink("/s/link", "/etc/passwd");
    memory.addOther("/s/fifo");
    copy("/s", "/to");
    EXPECT_THAT(engine.operations(), IsEmpty());
}

TEST_F(HostPayloadTest, AnEmptyOrMissingSourceFolderCopiesNothing) {
    memory.addFolder("/s");
    copy("/s", "/to");
    copy("/missing", "/to");
    EXPECT_THAT(engine.operations(), IsEmpty());
}

TEST_F(HostPayloadTest, EveryOccurrenceOfTheSourceFoldersPathIsReplaced) {
    memory.addFile("/s/t/s/t/file");
    copy("/s/t", "/to");
    EXPECT_THAT(installed, ElementsAre("/to/to/file"));
}

TEST_F(HostPayloadTest, TheReplacementIsOneOfTextAndNotOfWholeNames) {
    memory.addFile("/s/s-1/file");
    copy("/s", "/to");
    EXPECT_THAT(installed, ElementsAre("/to/to-1/file"));
}

TEST_F(HostPayloadTest, ASeparatorAtTheEndOfTheDestinationIsNotDoubled) {
    memory.addFile("/s/a");
    memory.addFile("/s/b/c");
    copy("/s", "/to/");
    EXPECT_THAT(installed, ElementsAre("/to/a", "/to/b/c"));
}

TEST_F(HostPayloadTest, WithoutADestinationNothingGoesToTheRootOfTheDisk) {
    memory.addFile("/s/a");
    copy("/s", "");
    EXPECT_THAT(engine.operations(), IsEmpty());
}

TEST_F(HostPayloadTest, ThePlannedItemsOfAHostAreWhatIsInstalledForIt) {
    addPayloadOfEveryKind();
    memory.addFile(payload + "/PHOTOSHOP/.hidden");
    memory.addLink(payload + "/PHOTOSHOP/link", "/etc");
    const auto sourcesFor = [this](const HostModel& host) {
        std::vector<std::string> sources;
        std::vector<std::string> destinations;
        for (const PlannedItem& item : makeInstallPlan(fake.platform, {host}).items) {
            sources.push_back(item.source);
            destinations.push_back(item.destination);
        }
        installed.clear();
        install(host);
        EXPECT_EQ(installed, destinations) << host.hostName();
        return sources;
    };
    EXPECT_THAT(
        sourcesFor(PhotoshopHostModel::initWithHostName(fake.platform, "Adobe Photoshop CC 2019")),
        ElementsAre(payload + "/PHOTOSHOP/Presets/run.jsx",
                    payload + "/PHOTOSHOP_PLUGINS/F.plugin"));
    EXPECT_THAT(sourcesFor(UnknownHostModel(fake.platform, "/My Plug-Ins")),
                ElementsAre(payload + "/PHOTOSHOP_PLUGINS/F.plugin"));
    EXPECT_THAT(sourcesFor(UnknownHostModel(fake.platform, "")), IsEmpty());
    EXPECT_THAT(sourcesFor(LightRoomHostModel(fake.platform, "Lightroom")),
                ElementsAre(payload + "/LIGHTROOM/Modules/F.lrplugin"));
    EXPECT_THAT(sourcesFor(ApertureHostModel(fake.platform, "Aperture")), IsEmpty());
}

TEST_F(HostPayloadTest, AFailedItemDoesNotStopTheOthersOfTheHost) {
    memory.addFile("/s/a");
    memory.addFile("/s/b");
    memory.makeUnwritable("/");
    fake.authorizations.works = [](const std::vector<std::string>& command) {
        return command.front() != "/bin/cp" || command.back() != "/to/a";
    };
    copy("/s", "/to");
    EXPECT_TRUE(engine.run.fileOpErrorOccurred);
    EXPECT_THAT(installed, ElementsAre("/to/b"));
}

TEST_F(HostPayloadTest, ItemsThatAreNewerAtTheDestinationAreReplaced) {
    memory.addFile("/s/a", "new");
    memory.addFile("/to/a", "old");
    memory.setModificationDate("/to/a", FileTime(std::chrono::seconds(100)));
    copy("/s", "/to");
    EXPECT_EQ(memory.contents("/to/a"), "new");
}

}  // namespace
}  // namespace installer::test
