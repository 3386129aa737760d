#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "install/after/ManifestCleaner.h"
#include "tests/install/engine/EngineParts.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string support = "/Users/tester/Library/Application Support";
const std::string base = support + "/Acme";

class ManifestCleanerTest : public testing::Test {
  protected:
    void clean() { ManifestCleaner(fake.platform).cleanManifests(); }

    FakePlatform fake;
    MemoryFileManager& memory = fake.memory;
};

TEST_F(ManifestCleanerTest, ManifestsAtAnyDepthAreDeleted) {
    memory.addFile(base + "/manifest.xml");
    memory.addFile(base + "/Filters 1/deep/er/manifest.xml");
    clean();
    EXPECT_THAT(operationsOf(fake),
                ElementsAre("remove " + base + "/manifest.xml",
                            "remove " + base + "/Filters 1/deep/er/manifest.xml"));
}

TEST_F(ManifestCleanerTest, OnlyRegularFilesOfExactlyThatNameAreDeleted) {
    memory.addFile(base + "/Manifest.xml");
    memory.addFile(base + "/manifest.xml.bak");
    memory.addFile(base + "/a/manifest.xml/file");
    memory.addLink(base + "/b/manifest.xml", "/etc/passwd");
    clean();
    EXPECT_THAT(operationsOf(fake), IsEmpty());
}

TEST_F(ManifestCleanerTest, ManifestsInPackagesAndHiddenFoldersStay) {
    memory.addFile(base + "/Tool.app/Contents/manifest.xml");
    memory.addFile(base + "/.cache/manifest.xml");
    clean();
    EXPECT_THAT(operationsOf(fake), IsEmpty());
}

TEST_F(ManifestCleanerTest, OtherMakersFoldersAreNeverSearched) {
    memory.addFile(support + "/Other/manifest.xml");
    memory.addFile(support + "/manifest.xml");
    clean();
    EXPECT_THAT(operationsOf(fake), IsEmpty());
}

class ManifestCleanerWithAnUnusableMakerName : public ManifestCleanerTest,
                                               public testing::WithParamInterface<const char*> {};

TEST_P(ManifestCleanerWithAnUnusableMakerName, NeverWidensTheSearch) {
    fake.bundle.tables["installer"]["company_name"] = GetParam();
    memory.addFile(support + "/manifest.xml");
    memory.addFile(support + "/Other/manifest.xml");
    memory.addFile("/Users/tester/Library/manifest.xml");
    memory.addFile(support + "/company_name/manifest.xml");
    clean();
    EXPECT_THAT(operationsOf(fake),
                ElementsAre("remove " + support + "/company_name/manifest.xml"));
}

INSTANTIATE_TEST_SUITE_P(Names, ManifestCleanerWithAnUnusableMakerName,
                         testing::Values("", ".", "..", "a/.."));

TEST_F(ManifestCleanerTest, WithoutTheMakersNameItsKeyNamesTheFolder) {
    fake.bundle.tables.clear();
    memory.addFile(support + "/company_name/manifest.xml");
    memory.addFile(support + "/manifest.xml");
    clean();
    EXPECT_THAT(operationsOf(fake),
                ElementsAre("remove " + support + "/company_name/manifest.xml"));
}

TEST_F(ManifestCleanerTest, AManifestThatCannotBeDeletedDoesNotStopTheSearch) {
    memory.addFile(base + "/a/manifest.xml");
    memory.addFile(base + "/b/manifest.xml");
    failOperation(fake, "remove");
    clean();
    EXPECT_THAT(operationsOf(fake), ElementsAre("remove " + base + "/a/manifest.xml",
                                                "remove " + base + "/b/manifest.xml"));
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

TEST_F(ManifestCleanerTest, AMissingFolderOrHomeIsNothingToReport) {
    clean();
    fake.searchPaths.home.reset();
    memory.addFile("/manifest.xml");
    memory.addFile("/Acme/manifest.xml");
    clean();
    EXPECT_THAT(operationsOf(fake), IsEmpty());
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

TEST_F(ManifestCleanerTest, TheUsersFolderOnTheTargetVolumeIsCleaned) {
    fake.searchPaths.volume = "/Volumes/Other";
    memory.addFile(base + "/manifest.xml");
    memory.addFile("/Volumes/Other" + base + "/manifest.xml");
    clean();
    EXPECT_THAT(operationsOf(fake), ElementsAre("remove /Volumes/Other" + base + "/manifest.xml"));
}

}  // namespace
}  // namespace installer::test
