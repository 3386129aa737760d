#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/HostModel.h"
#include "install/after/ExternalEditorList.h"
#include "tests/install/engine/EngineParts.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string editorFolder = "/Library/Application Support/Acme/Prismor X";
const std::string file = editorFolder + "/ExternalEditors.csv";
const std::string inkvale = "/Applications/Quarrytone Inkvale 4.app";
const std::string magniford =
    "/Library/Application Support/Quarrytone/Magniford 3/Quarrytone Magniford 3.app";
const std::string inkvaleRow = inkvale + ",Inkvale 4,4,2,1003,100,ORIGINAL, \n";
const std::string magnifordRow = magniford + ",Magniford 3,4,2,1003,100,ORIGINAL, \n";

class ExternalEditorListTest : public testing::Test {
  protected:
    HostModel photoshop(const std::string& name) {
        return PhotoshopHostModel::initWithHostName(fake.platform, name);
    }
    /// A release older than 2019, whose folder its paths file names.
    HostModel photoshopAt(const std::string& name, const std::string& applicationFolder) {
        const std::string paths = "/paths/" + name + " Paths";
        memory.addFile(paths, applicationFolder + std::string(1, '\0'));
        return PhotoshopHostModel::initWithPathsFilePath(fake.platform, paths);
    }
    void configure(const std::vector<HostModel>& hosts = {}) {
        ExternalEditorList(fake.platform, engine.run, engine.folders)
            .configurePrismorExternalEditors(hosts);
    }
    std::string written() { return memory.contents(file); }

    EngineParts engine;
    FakePlatform& fake = engine.fake;
    MemoryFileManager& memory = fake.memory;
    std::vector<std::string>& installed = engine.run.installedPaths;
};

TEST_F(ExternalEditorListTest, ARowForEachEditorInAFixedOrder) {
    memory.addFolder(magniford);
    memory.addFolder(inkvale);
    configure({photoshop("Adobe Photoshop CC 2019")});
    EXPECT_EQ(written(),
              "/Applications/Adobe Photoshop CC 2019/Adobe Photoshop CC 2019.app,"
              "Adobe Photoshop CC 2019,9,2,1003,100,ORIGINAL, \n" +
                  inkvaleRow + magnifordRow);
    EXPECT_THAT(installed, ElementsAre(file));
}

TEST_F(ExternalEditorListTest, OnlyASiblingThatIsInstalledHasARow) {
    memory.addFolder(magniford);
    configure();
    EXPECT_EQ(written(), magnifordRow);
}

TEST_F(ExternalEditorListTest, WithNothingToListTheOldFileIsGoneAndTheFolderIsMade) {
    memory.addFile(file, "rows of the user");
    configure();
    EXPECT_FALSE(memory.exists(file));
    EXPECT_TRUE(memory.exists(editorFolder));
    EXPECT_THAT(installed, IsEmpty());
}

TEST_F(ExternalEditorListTest, TheFolderIsMadeEvenWhenNoRowFollows) {
    configure();
    EXPECT_TRUE(memory.exists(editorFolder));
    EXPECT_FALSE(memory.exists(file));
}

TEST_F(ExternalEditorListTest, TheOldFileIsRemovedBeforeTheFolderIsSeenTo) {
    memory.addFile(file);
    memory.addFolder(inkvale);
    configure();
    EXPECT_THAT(engine.operations(), ElementsAre("remove " + file, "createFile " + file));
}

TEST_F(ExternalEditorListTest, AnOldFileThatCannotBeRemovedIsReplaced) {
    memory.addFile(file, "rows of the user");
    memory.addFolder(inkvale);
    failOperation(fake, "remove");
    configure();
    EXPECT_EQ(written(), inkvaleRow);
}

TEST_F(ExternalEditorListTest, TheNewestPhotoshopIsListed) {
    configure({photoshop("Adobe Photoshop CC 2019"), photoshop("Adobe Photoshop CC 2021"),
               photoshop("Adobe Photoshop CC 2020")});
    EXPECT_TRUE(written().starts_with("/Applications/Adobe Photoshop CC 2021/"));
}

TEST_F(ExternalEditorListTest, TheFirstOfEqualVersionsIsListed) {
    configure({photoshopAt("Adobe Photoshop CC 2015", "/Applications/First"),
               photoshopAt("Adobe Photoshop CC 2015.5", "/Applications/Second")});
    EXPECT_TRUE(written().starts_with("/Applications/First/First.app,Adobe Photoshop CC 2015,9,"));
}

TEST_F(ExternalEditorListTest, APhotoshopWithoutVersionAndElementsAreNeverListed) {
    configure({photoshopAt("Adobe Photoshop 2020", "/Applications/Adobe Photoshop 2020"),
               photoshopAt("Adobe Photoshop Elements 2020", "/Applications/Elements")});
    EXPECT_FALSE(memory.exists(file));
}

TEST_F(ExternalEditorListTest, HostsOfOtherKindsAreNoCandidates) {
    configure({LightRoomHostModel(fake.platform, "Adobe Lightroom"),
               UnknownHostModel(fake.platform, "/My Plug-Ins"),
               FireworksHostModel(fake.platform, "Fireworks")});
    EXPECT_FALSE(memory.exists(file));
}

TEST_F(ExternalEditorListTest, AHostThatIsNotSelectedIsACandidate) {
    auto host = photoshop("Adobe Photoshop CC 2019");
    host.as<PhotoshopHostModel>()->setHostIsSelected(false);
    configure({host});
    EXPECT_TRUE(memory.exists(file));
}

TEST_F(ExternalEditorListTest, PathsAreThoseThatTheTargetVolumesOwnSystemWillKnow) {
    fake.searchPaths.volume = "/Volumes/Other";
    memory.addFolder(inkvale);  // on the running system, where nobody looks
    memory.addFolder("/Volumes/Other" + magniford);
    configure({photoshopAt("Adobe Photoshop CC 2018", "/Applications/Adobe Photoshop CC 2018")});
    EXPECT_EQ(memory.contents("/Volumes/Other" + file),
              "/Applications/Adobe Photoshop CC 2018/Adobe Photoshop CC 2018.app,"
              "Adobe Photoshop CC 2018,9,2,1003,100,ORIGINAL, \n" +
                  magnifordRow);
    EXPECT_THAT(installed, ElementsAre("/Volumes/Other" + file));
}

TEST_F(ExternalEditorListTest, NamesWithCommasAreNotQuoted) {
    configure({photoshopAt("Adobe Photoshop CC 2018, mine", "/Apps/a,b")});
    EXPECT_EQ(written(),
              "/Apps/a,b/a,b.app,Adobe Photoshop CC 2018, mine,9,2,1003,100,ORIGINAL, \n");
}

TEST_F(ExternalEditorListTest, AfterARefusalThereIsNoFile) {
    memory.addFile(file, "rows of the user");
    memory.addFolder(inkvale);
    engine.run.authDenied = true;
    configure();
    EXPECT_FALSE(memory.exists(file));
    EXPECT_THAT(installed, IsEmpty());
}

TEST_F(ExternalEditorListTest, ARefusalWhileMakingTheFolderLeavesNoFile) {
    memory.addFolder(inkvale);
    memory.makeUnwritable("/");
    refuseFromCommand(fake, 1);
    configure();
    EXPECT_TRUE(engine.run.authDenied);
    EXPECT_THAT(installed, IsEmpty());
}

TEST_F(ExternalEditorListTest, AFileThatCannotBeWrittenIsNotReported) {
    memory.addFolder(inkvale);
    failOperation(fake, "createFile");
    configure();
    EXPECT_FALSE(engine.run.fileOpErrorOccurred);
    EXPECT_THAT(fake.log.lines, IsEmpty());
    EXPECT_THAT(fake.alerts.shown, IsEmpty());
}

}  // namespace
}  // namespace installer::test
