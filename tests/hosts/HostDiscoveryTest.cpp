#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/HostDiscovery.h"
#include "hosts/HostLists.h"
#include "tests/hosts/PhotoshopScene.h"
#include "tests/hosts/RowName.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::string domain = "com.quarrytone.installer";

class HostDiscoveryTest : public PhotoshopScene {
  protected:
    std::vector<std::string> discovered() {
        return names(HostDiscovery(fake_.platform).discoverHosts());
    }
    std::vector<std::string> found() {
        return names(foundHosts(HostDiscovery(fake_.platform).discoverHosts()));
    }
};

TEST_F(HostDiscoveryTest, FindsNothingOnAMachineWithoutAdobe) {
    EXPECT_THAT(discovered(), IsEmpty());
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_THAT(fake_.log.lines, IsEmpty());
    EXPECT_THAT(fake_.journal, IsEmpty());
}

TEST_F(HostDiscoveryTest, FindsNothingForAUserWithoutHome) {
    addPhotoshop("Adobe Photoshop CS6");
    fake_.searchPaths.home.reset();
    EXPECT_THAT(discovered(), IsEmpty());
    EXPECT_THAT(fake_.log.lines, IsEmpty());
}

TEST_F(HostDiscoveryTest, FindsPathsFilesInBothFoldersAdobesOwnFirst) {
    addPhotoshop("Adobe Photoshop CC 2015");
    addPhotoshop("Adobe Photoshop CS6");
    addPhotoshop("Adobe Photoshop CC 2017", adobeSupport);
    addPhotoshop("Adobe Photoshop CC", adobeSupport);
    EXPECT_THAT(discovered(), ElementsAre("Adobe Photoshop CC 2017", "Adobe Photoshop CC",
                                          "Adobe Photoshop CC 2015", "Adobe Photoshop CS6"));
    EXPECT_THAT(fake_.log.lines,
                ElementsAre("Found path file " + adobeSupport + "Adobe Photoshop CC 2017 Paths",
                            "Found path file " + adobeSupport + "Adobe Photoshop CC Paths",
                            "Found path file " + preferences + "Adobe Photoshop CC 2015 Paths",
                            "Found path file " + preferences + "Adobe Photoshop CS6 Paths"));
}

TEST_F(HostDiscoveryTest, NamesAPathsFileInTheLogBeforeItIsRead) {
    addPhotoshop("Adobe Photoshop CS6");
    std::vector<std::string> linesWhenRead;
    fake_.files.setFault([&](const RecordingFileManager::Operation& operation) {
        if (operation.front() == "read") linesWhenRead = fake_.log.lines;
        return std::error_code{};
    });
    EXPECT_THAT(discovered(), SizeIs(1));
    EXPECT_THAT(linesWhenRead,
                ElementsAre("Found path file " + preferences + "Adobe Photoshop CS6 Paths"));
}

TEST_F(HostDiscoveryTest, AFolderThatCannotBeListedContributesNothing) {
    addPhotoshop("Adobe Photoshop CS6");
    addPhotoshop("Adobe Photoshop CC", adobeSupport);
    fake_.files.setFault([](const RecordingFileManager::Operation& operation) {
        const bool fails = operation.front() == "list" && operation[1].ends_with("/Adobe");
        return fails ? std::make_error_code(std::errc::permission_denied) : std::error_code{};
    });
    EXPECT_THAT(discovered(), ElementsAre("Adobe Photoshop CS6"));
    EXPECT_THAT(fake_.log.lines, SizeIs(1));
}

struct FileRow {
    std::string file;
    bool listed;
};

class HostDiscoveryFile : public testing::TestWithParam<FileRow> {};

TEST_P(HostDiscoveryFile, IsListedByItsName) {
    FakePlatform fake;
    fake.memory.addFile(preferences + GetParam().file, "/Photoshop\0/Plug-Ins\0"s);
    EXPECT_THAT(HostDiscovery(fake.platform).discoverHosts(), SizeIs(GetParam().listed ? 1 : 0));
}

INSTANTIATE_TEST_SUITE_P(
    PathsFiles, HostDiscoveryFile,
    testing::Values(
        FileRow{"Adobe Photoshop CS3 Paths", false}, FileRow{"Adobe Photoshop CS5 Paths", false},
        FileRow{"Adobe Photoshop CS6 Paths", true}, FileRow{"Adobe Photoshop CS-3 Paths", true},
        FileRow{"Adobe Photoshop CC Paths", true}, FileRow{"Adobe Photoshop CC 2014 Paths", true},
        FileRow{"Adobe Photoshop CC 2019 Paths", true},
        FileRow{"Adobe Photoshop 2020 Paths", false},
        FileRow{"Adobe Photoshop Elements 8 Paths", false},
        FileRow{"Adobe Photoshop Elements 9 Paths", false},
        FileRow{"Adobe Photoshop Elements 11 Paths", false},
        FileRow{"Adobe Photoshop Elements 2018 Paths", false},
        FileRow{"Photoshop CS6 Paths", false}, FileRow{"adobe Photoshop CS6 Paths", false},
        FileRow{"Adobe Photoshop CS6 paths", false}, FileRow{"Adobe Photoshop CS6", false},
        FileRow{"Paths of Adobe Photoshop CS6", true}, FileRow{"PathsAdobe CS6", true},
        FileRow{".Adobe CS6 Paths", true}, FileRow{"\u5199\u771F Adobe CC 2018 Paths", true}),
    [](const auto& row) { return rowName(row.param.file); });

INSTANTIATE_TEST_SUITE_P(SettingsFiles, HostDiscoveryFile,
                         testing::Values(FileRow{"Adobe Photoshop CC 2018 Settings", false},
                                         FileRow{"Adobe Photoshop CC 2019 Settings", true},
                                         FileRow{"Adobe Photoshop CC 2020 Settings", true},
                                         FileRow{"Adobe Photoshop 2020 Settings", false},
                                         FileRow{"Adobe Photoshop CS-3 Settings", true},
                                         FileRow{"Adobe Photoshop Elements 2019 Settings", false},
                                         FileRow{"Photoshop CC 2019 Settings", false},
                                         FileRow{"Adobe Photoshop CC 2019 settings", false},
                                         FileRow{"Adobe Photoshop CC 2019", false}),
                         [](const auto& row) { return rowName(row.param.file); });

TEST_F(HostDiscoveryTest, ASettingsFileGivesAHostWithTheFixedFolders) {
    fake_.memory.addFolder(preferences + "Adobe Photoshop CC 2019 Settings");
    fake_.memory.addFolder("/Applications/Adobe Photoshop CC 2019/Adobe Photoshop CC 2019.app");
    const auto hosts = HostDiscovery(fake_.platform).discoverHosts();
    ASSERT_THAT(foundHosts(hosts), SizeIs(1));
    const auto* host = foundHosts(hosts).front().as<PhotoshopHostModel>();
    ASSERT_NE(host, nullptr);
    EXPECT_EQ(host->hostName(), "Adobe Photoshop CC 2019");
    EXPECT_EQ(host->appPath(), "/Applications/Adobe Photoshop CC 2019");
    EXPECT_EQ(host->plugInPath(), "/Library/Application Support/Adobe/Plug-Ins/CC");
    EXPECT_THAT(fake_.log.lines, IsEmpty());
}

TEST_F(HostDiscoveryTest, SettingsFilesInAdobesSupportFolderAreIgnored) {
    fake_.memory.addFile(adobeSupport + "Adobe Photoshop CC 2019 Settings");
    EXPECT_THAT(discovered(), IsEmpty());
}

TEST_F(HostDiscoveryTest, AnOlderSettingsFileWaitsForItsPathsFileBeforeItIsDropped) {
    fake_.memory.addFile(preferences + "Adobe Photoshop CC 2018 Settings");
    EXPECT_THAT(discovered(), IsEmpty());
    EXPECT_THAT(fake_.clock.sleeps, SizeIs(3));
    EXPECT_THAT(fake_.log.lines, SizeIs(3));
}

TEST_F(HostDiscoveryTest, EverySettingsInTheNameIsDropped) {
    fake_.memory.addFile(preferences + "Adobe Settings Photoshop CC 2019 Settings");
    EXPECT_THAT(discovered(), ElementsAre("Adobe Photoshop CC 2019"));
}

TEST_F(HostDiscoveryTest, AFileThatIsBothKindsIsListedTwice) {
    fake_.memory.addFile(preferences + "Adobe Photoshop CC 2019 Settings Paths",
                         "/Photoshop\0/Plug-Ins\0"s);
    EXPECT_THAT(discovered(),
                ElementsAre("Adobe Photoshop CC 2019 Settings", "Adobe Photoshop CC 2019 Paths"));
}

TEST_F(HostDiscoveryTest, AReleaseWithBothFilesIsOfferedTwice) {
    fake_.memory.addFile(preferences + "Adobe Photoshop CC 2019 Settings");
    addPhotoshop("Adobe Photoshop CC 2019");
    EXPECT_THAT(found(), ElementsAre("Adobe Photoshop CC 2019", "Adobe Photoshop CC 2019"));
    addPhotoshop("Adobe Photoshop CC 2019", adobeSupport);
    EXPECT_THAT(found(), SizeIs(3));
}

TEST_F(HostDiscoveryTest, AnUnreadablePathsFileIsListedButNotOffered) {
    fake_.memory.addFolder(preferences + "Adobe Photoshop CS6 Paths");
    fake_.memory.addOther(preferences + "Adobe Photoshop CC Paths");
    const auto hosts = HostDiscovery(fake_.platform).discoverHosts();
    EXPECT_THAT(names(hosts), ElementsAre("Adobe Photoshop CS6", "Adobe Photoshop CC"));
    EXPECT_THAT(foundHosts(hosts), IsEmpty());
    EXPECT_THAT(fake_.clock.sleeps, SizeIs(6));
}

TEST_F(HostDiscoveryTest, AnOldPathsFileThatCannotBeReadIsWaitedForAsWell) {
    fake_.memory.addFolder(preferences + "Adobe Photoshop CS3 Paths");
    EXPECT_THAT(discovered(), IsEmpty());
    EXPECT_THAT(fake_.clock.sleeps, SizeIs(3));
}

TEST_F(HostDiscoveryTest, OffersTheSuitesBeforeTheYearReleasesNewestFirst) {
    for (const char* name :
         {"Adobe Photoshop CC 2014", "Adobe Photoshop CS6", "Adobe Photoshop CC 2015.5",
          "Adobe Photoshop CC", "Adobe Photoshop CC 2017"}) {
        addPhotoshop(name);
    }
    EXPECT_THAT(found(),
                ElementsAre("Adobe Photoshop CC", "Adobe Photoshop CS6", "Adobe Photoshop CC 2017",
                            "Adobe Photoshop CC 2015.5", "Adobe Photoshop CC 2014"));
}

TEST_F(HostDiscoveryTest, HostsOfEqualOrderStayInTheOrderOfDiscovery) {
    addPhotoshop("Adobe Photoshop CC 2015.5");
    addPhotoshop("Adobe Photoshop CC 2015");
    addPhotoshop("Adobe Photoshop CC 2015.1", adobeSupport);
    EXPECT_THAT(found(), ElementsAre("Adobe Photoshop CC 2015.1", "Adobe Photoshop CC 2015.5",
                                     "Adobe Photoshop CC 2015"));
}

TEST_F(HostDiscoveryTest, TheListNeverStartsWithARememberedCustomFolder) {
    fake_.preferences.values[{domain, "customPath"}] = "/My Plug-Ins"s;
    fake_.preferences.values[{domain, "customPath64"}] = "/My Plug-Ins"s;
    EXPECT_THAT(HostDiscovery(fake_.platform).discoverHosts(), IsEmpty());
    fake_.preferences.values.erase({domain, "customPath"});
    EXPECT_THAT(HostDiscovery(fake_.platform).discoverHosts(), IsEmpty());
    fake_.preferences.values[{domain, "customPath"}] = true;
    EXPECT_THAT(HostDiscovery(fake_.platform).discoverHosts(), IsEmpty());
    EXPECT_THAT(fake_.preferences.synchronized, IsEmpty());
}

TEST_F(HostDiscoveryTest, FileNamesWithPercentSignsAreLoggedAsTheyAre) {
    fake_.memory.addFile(preferences + "Adobe %@ %s CS6 Paths", "/Photoshop\0"s);
    EXPECT_THAT(discovered(), ElementsAre("Adobe %@ %s CS6"));
    EXPECT_TRUE(fake_.log.has("Found path file " + preferences + "Adobe %@ %s CS6 Paths"));
}

TEST_F(HostDiscoveryTest, LooksInTheUsersFoldersOnTheTargetVolume) {
    addPhotoshop("Adobe Photoshop CS6");
    fake_.searchPaths.volume = "/Volumes/Other";
    fake_.memory.addFile("/Volumes/Other" + preferences + "Adobe Photoshop CC Paths",
                         "/Applications/Adobe Photoshop CC\0"s);
    fake_.memory.addFolder("/Volumes/Other/Applications/Adobe Photoshop CC/Photoshop.app");
    EXPECT_THAT(found(), ElementsAre("Adobe Photoshop CC"));
}

}  // namespace

}  // namespace installer::test
