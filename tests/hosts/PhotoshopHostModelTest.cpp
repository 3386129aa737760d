#include <chrono>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/PhotoshopHostModel.h"
#include "tests/hosts/PhotoshopScene.h"
#include "tests/hosts/RowName.h"
#include "tests/support/FakePlatform.h"

// Where a Photoshop host finds its folders.

namespace installer::test {

namespace {

using namespace std::string_literals;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

const std::string sharedPlugIns = "/Library/Application Support/Adobe/Plug-Ins/CC";

class PhotoshopHostModelTest : public testing::Test {
  protected:
    PhotoshopHostModelTest() {
        fake_.files.setFault([this](const RecordingFileManager::Operation& operation) {
            if (operation.front() == "read") ++reads_;
            return std::error_code{};
        });
    }

    /// The host of a paths file with these contents.
    PhotoshopHostModel hostOf(const std::string& contents,
                              const std::string& name = "Adobe Photoshop CS6") {
        fake_.memory.addFile(preferences + name + " Paths", contents);
        return hostOfPathsFile(name);
    }

    PhotoshopHostModel hostOfPathsFile(const std::string& name = "Adobe Photoshop CS6") {
        return PhotoshopHostModel::initWithPathsFilePath(fake_.platform,
                                                         preferences + name + " Paths");
    }

    FakePlatform fake_;
    int reads_ = 0;
};

void expectNoPaths(const PhotoshopHostModel& host) {
    EXPECT_EQ(host.appPath(), "");
    EXPECT_EQ(host.plugInPath(), "");
    EXPECT_EQ(host.scriptsPath(), "");
    EXPECT_EQ(host.panelsPath(), "");
    EXPECT_FALSE(host.hostIsInstalled());
}

TEST_F(PhotoshopHostModelTest, ReadsItsFoldersFromThePathsFile) {
    fake_.memory.addFolder("/Applications/Adobe Photoshop CS6/Adobe Photoshop CS6.app");
    const PhotoshopHostModel host =
        hostOf("/Applications/Adobe Photoshop CS6\0/Plug-Ins Folder\0more\0"s);
    EXPECT_EQ(host.hostName(), "Adobe Photoshop CS6");
    EXPECT_EQ(host.appPath(), "/Applications/Adobe Photoshop CS6");
    EXPECT_EQ(host.plugInPath(), "/Plug-Ins Folder");
    EXPECT_EQ(host.scriptsPath(), "/Applications/Adobe Photoshop CS6/Presets/Scripts");
    EXPECT_EQ(host.panelsPath(), "/Plug-Ins Folder/Panels");
    EXPECT_TRUE(host.hostIsInstalled());
    EXPECT_TRUE(host.hostIsSelected());
    EXPECT_THAT(fake_.log.lines, IsEmpty());
    EXPECT_THAT(fake_.clock.sleeps, IsEmpty());
}

TEST_F(PhotoshopHostModelTest, LosesEveryPathsFromItsName) {
    const PhotoshopHostModel host = PhotoshopHostModel::initWithPathsFilePath(
        fake_.platform, "/Some Paths/ Paths Paths Photoshop PathsX CS6 Paths");
    EXPECT_EQ(host.hostName(), " PhotoshopX CS6");
}

TEST_F(PhotoshopHostModelTest, CanBeDeselected) {
    PhotoshopHostModel host = hostOf("/Photoshop");
    host.setHostIsSelected(false);
    EXPECT_FALSE(host.hostIsSelected());
}

TEST_F(PhotoshopHostModelTest, SevenBytesAreTooShort) {
    expectNoPaths(hostOf("/1234\0\0"s));
    EXPECT_THAT(fake_.log.lines, ElementsAre("Could not parse paths file: too short: "
                                             "/Users/tester/Library/Preferences/Adobe Photoshop "
                                             "CS6 Paths"));
    EXPECT_THAT(fake_.clock.sleeps, IsEmpty());
}

TEST_F(PhotoshopHostModelTest, AnEmptyFileIsTooShort) {
    expectNoPaths(hostOf(""));
    EXPECT_THAT(fake_.log.lines, ElementsAre(StartsWith("Could not parse paths file: too short")));
}

TEST_F(PhotoshopHostModelTest, TooShortAFileLeavesEvenANewReleaseWithoutFolders) {
    expectNoPaths(hostOf("short", "Adobe Photoshop CC 2019"));
}

TEST_F(PhotoshopHostModelTest, EightBytesAreParsed) {
    fake_.memory.addFolder("/1234567/Photoshop.app");
    const PhotoshopHostModel host = hostOf("/1234567");
    EXPECT_EQ(host.appPath(), "/1234567");
    EXPECT_TRUE(host.hostIsInstalled());
    EXPECT_THAT(fake_.log.lines, IsEmpty());
}

struct PathsRow {
    std::string name;
    std::string contents;
    std::string appPath;
    std::string plugInPath;
};

class PhotoshopHostModelPathsFile : public testing::TestWithParam<PathsRow> {};

TEST_P(PhotoshopHostModelPathsFile, GivesTwoPaths) {
    FakePlatform fake;
    fake.memory.addFile("/Adobe Photoshop CS5 Paths", GetParam().contents);
    const PhotoshopHostModel host =
        PhotoshopHostModel::initWithPathsFilePath(fake.platform, "/Adobe Photoshop CS5 Paths");
    EXPECT_EQ(host.appPath(), GetParam().appPath);
    EXPECT_EQ(host.plugInPath(), GetParam().plugInPath);
    EXPECT_FALSE(host.hostIsInstalled());
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Contents, PhotoshopHostModelPathsFile,
    testing::Values(
        PathsRow{"two strings", "/Photoshop\0/Plug-Ins\0"s, "/Photoshop", "/Plug-Ins"},
        PathsRow{"last string without NUL", "/Photoshop\0/Plug-Ins"s, "/Photoshop", "/Plug-Ins"},
        PathsRow{"one string", "/Photoshop\0"s, "/Photoshop", "/Photoshop/Plug-Ins"},
        PathsRow{"no NUL at all", "/Photoshop", "/Photoshop", "/Photoshop/Plug-Ins"},
        PathsRow{"second string of one byte", "/Photoshop\0/"s, "/Photoshop", "/"},
        PathsRow{"empty second string at the end", "/Photoshop\0\0"s, "/Photoshop", "\0"s},
        PathsRow{"empty second string before a third", "/Photoshop\0\0/Third\0"s, "/Photoshop",
                 "\0/Third"s},
        PathsRow{"empty first string", "\0/Photoshop\0/Plug-Ins\0"s, "\0/Photoshop"s, "/Plug-Ins"},
        PathsRow{"two NULs first", "\0\0/Photoshop\0"s, "\0"s, "/Photoshop"},
        PathsRow{"eight NULs", "\0\0\0\0\0\0\0\0"s, "\0"s, "\0"s},
        PathsRow{"first string not UTF8", "/Photo\xFFshop\0/Plug-Ins\0"s, "", "/Plug-Ins"},
        PathsRow{"only string not UTF8", "/Photo\xFFshop\0"s, "", ""},
        PathsRow{"second string not UTF8", "/Photoshop\0/Plug\xC0\xAFIns\0"s, "/Photoshop", ""},
        PathsRow{"relative paths", "Photoshop\0Plug-Ins\0"s, "Photoshop", "Plug-Ins"},
        PathsRow{"doubled separators", "//Apps//Photoshop/\0/Plug-Ins//\0"s, "/Apps/Photoshop",
                 "/Plug-Ins"},
        PathsRow{"every script", "/\u5199\u771F/\u0424\u043E\u0442\u043E\0/\U0001F4F7 \u05E9\0"s,
                 "/\u5199\u771F/\u0424\u043E\u0442\u043E", "/\U0001F4F7 \u05E9"},
        PathsRow{"line ends and percent signs", "/Photo\nshop\0/100%@ %s\n\0"s, "/Photo\nshop",
                 "/100%@ %s\n"}),
    [](const auto& row) { return rowName(row.param.name); });

TEST_F(PhotoshopHostModelTest, OneStringPutsThePanelsIntoTheApplicationsPlugIns) {
    const PhotoshopHostModel host =
        hostOf("/Applications/Adobe Photoshop CS5\0"s, "Adobe Photoshop CS5");
    EXPECT_EQ(host.plugInPath(), "/Applications/Adobe Photoshop CS5/Plug-Ins");
    EXPECT_EQ(host.panelsPath(), "/Applications/Adobe Photoshop CS5/Plug-Ins/Panels");
}

TEST_F(PhotoshopHostModelTest, WhatIsJoinedFromAnUnknownFolderIsUnknown) {
    const PhotoshopHostModel noApplication = hostOf("/Photo\xFFshop\0/Plug-Ins\0"s);
    EXPECT_EQ(noApplication.scriptsPath(), "");
    EXPECT_EQ(noApplication.panelsPath(), "/Plug-Ins/Panels");
    const PhotoshopHostModel noPlugIns = hostOf("/Photoshop\0/Plug\xFFIns\0"s);
    EXPECT_EQ(noPlugIns.scriptsPath(), "/Photoshop/Presets/Scripts");
    EXPECT_EQ(noPlugIns.panelsPath(), "");
}

TEST_F(PhotoshopHostModelTest, IsNotInstalledWithoutAPlugInFolder) {
    fake_.memory.addFolder("/Photoshop/Photoshop.app");
    EXPECT_FALSE(hostOf("/Photoshop\0/Plug\xFFIns\0"s).hostIsInstalled());
}

TEST_F(PhotoshopHostModelTest, APathWithANulIsNotItsTruncation) {
    fake_.memory.addFolder("/Photoshop/Photoshop.app");
    fake_.memory.addFolder("/Photoshop.app");
    const PhotoshopHostModel host = hostOf("\0/Photoshop\0/Plug-Ins\0"s);
    EXPECT_EQ(host.appPath(), "\0/Photoshop"s);
    EXPECT_FALSE(host.hostIsInstalled());
}

TEST_F(PhotoshopHostModelTest, ARelativePathNamesNothing) {
    fake_.memory.addFolder("/Photoshop/Photoshop.app");
    EXPECT_FALSE(hostOf("Photoshop\0/Plug-Ins\0"s).hostIsInstalled());
}

struct FolderRow {
    std::string name;
    std::string plugInPath;
};

class PhotoshopHostModelPlugInFolder : public testing::TestWithParam<FolderRow> {};

TEST_P(PhotoshopHostModelPlugInFolder, DependsOnTheRelease) {
    FakePlatform fake;
    const std::string path = "/" + GetParam().name + " Paths";
    fake.memory.addFile(path, "/Photoshop\0/Second\0"s);
    const PhotoshopHostModel host = PhotoshopHostModel::initWithPathsFilePath(fake.platform, path);
    EXPECT_EQ(host.plugInPath(), GetParam().plugInPath);
    EXPECT_EQ(host.panelsPath(), GetParam().plugInPath + "/Panels");
}

INSTANTIATE_TEST_SUITE_P(Releases, PhotoshopHostModelPlugInFolder,
                         testing::Values(FolderRow{"Adobe Photoshop CS6", "/Second"},
                                         FolderRow{"Adobe Photoshop CC", "/Second"},
                                         FolderRow{"Adobe Photoshop CC 2014.9", "/Second"},
                                         FolderRow{"Adobe Photoshop CC 2015", "/Second"},
                                         FolderRow{"Adobe Photoshop CC 2015.4", "/Second"},
                                         FolderRow{"Adobe Photoshop CC 2015.5", sharedPlugIns},
                                         FolderRow{"Adobe Photoshop CC 2015.-1", sharedPlugIns},
                                         FolderRow{"Adobe Photoshop CC 2016", sharedPlugIns},
                                         FolderRow{"Adobe Photoshop CC 2017", sharedPlugIns},
                                         FolderRow{"Adobe Photoshop CS-3", sharedPlugIns},
                                         FolderRow{"Adobe Photoshop Elements 2018", sharedPlugIns},
                                         FolderRow{"Adobe Photoshop 2020", "/Second"}),
                         [](const auto& row) { return rowName(row.param.name); });

TEST_F(PhotoshopHostModelTest, TheSharedFolderAloneDoesNotInstallIt) {
    const PhotoshopHostModel host = hostOf("/Photo\xFFshop\0"s, "Adobe Photoshop CC 2017");
    EXPECT_EQ(host.plugInPath(), sharedPlugIns);
    EXPECT_FALSE(host.hostIsInstalled());
}

struct EntryRow {
    std::string entry;
    bool hostIsInstalled;
};

class PhotoshopHostModelApplicationFolder : public testing::TestWithParam<EntryRow> {};

TEST_P(PhotoshopHostModelApplicationFolder, MakesTheHostInstalledWhenAnEntryEndsInApp) {
    FakePlatform fake;
    fake.memory.addFile("/Adobe Photoshop CS6 Paths", "/Photoshop\0"s);
    fake.memory.addFile("/Photoshop/Read Me.txt");
    fake.memory.addFile("/Photoshop/" + GetParam().entry);
    const PhotoshopHostModel host =
        PhotoshopHostModel::initWithPathsFilePath(fake.platform, "/Adobe Photoshop CS6 Paths");
    EXPECT_EQ(host.hostIsInstalled(), GetParam().hostIsInstalled);
    EXPECT_EQ(host.plugInPath(), "/Photoshop/Plug-Ins");
}

INSTANTIATE_TEST_SUITE_P(Entries, PhotoshopHostModelApplicationFolder,
                         testing::Values(EntryRow{"Adobe Photoshop CS6.app", true},
                                         EntryRow{"\u5199\u771F.app", true}, EntryRow{".app", true},
                                         EntryRow{"app", false}, EntryRow{"Photoshop.APP", false},
                                         EntryRow{"Photoshop.app.zip", false}),
                         [](const auto& row) { return rowName(row.param.entry); });

TEST_F(PhotoshopHostModelTest, IsNotInstalledWhenItsFolderIsEmptyMissingOrAFile) {
    fake_.memory.addFolder("/Empty");
    fake_.memory.addFile("/File.app");
    EXPECT_FALSE(hostOf("/Empty\0\0"s).hostIsInstalled());
    EXPECT_FALSE(hostOf("/Missing\0"s).hostIsInstalled());
    EXPECT_FALSE(hostOf("/File.app\0"s).hostIsInstalled());
    EXPECT_THAT(fake_.log.lines, IsEmpty());
}

TEST_F(PhotoshopHostModelTest, PathsAreReadHoweverLongTheyAreButNotAHugeFile) {
    const std::string first = "/" + std::string(4000, 'a');
    const std::string second = "/" + std::string(4000, 'b');
    const PhotoshopHostModel host = hostOf(first + '\0' + second + '\0');
    EXPECT_EQ(host.appPath(), first);
    EXPECT_EQ(host.plugInPath(), second);
    const std::string huge = "/" + std::string(std::size_t{1} << 20U, 'a');
    EXPECT_LT(hostOf(huge + '\0').appPath().size(), huge.size());
}

TEST_F(PhotoshopHostModelTest, AnApplicationFolderThatCannotBeListedIsNotInstalledWithoutAWord) {
    fake_.memory.addFolder("/Photoshop/Photoshop.app");
    fake_.files.setFault([](const RecordingFileManager::Operation& operation) {
        return operation.front() == "list" ? std::make_error_code(std::errc::permission_denied)
                                           : std::error_code{};
    });
    EXPECT_FALSE(hostOf("/Photoshop\0"s).hostIsInstalled());
    EXPECT_THAT(fake_.log.lines, IsEmpty());
}

TEST_F(PhotoshopHostModelTest, ALinkedApplicationFolderCountsAsWhatItLeadsToAndKeepsItsPath) {
    fake_.memory.addFolder("/Volumes/Large/Photoshop/Photoshop.app");
    fake_.memory.addLink("/Applications/Photoshop", "/Volumes/Large/Photoshop");
    const PhotoshopHostModel host = hostOf("/Applications/Photoshop\0"s);
    EXPECT_TRUE(host.hostIsInstalled());
    EXPECT_EQ(host.appPath(), "/Applications/Photoshop");
    EXPECT_EQ(host.scriptsPath(), "/Applications/Photoshop/Presets/Scripts");
    EXPECT_EQ(host.plugInPath(), "/Applications/Photoshop/Plug-Ins");
}

TEST_F(PhotoshopHostModelTest, ALinkedApplicationFolderThatLeadsNowhereIsNotInstalled) {
    fake_.memory.addLink("/Applications/Photoshop", "/Volumes/Away/Photoshop");
    EXPECT_FALSE(hostOf("/Applications/Photoshop\0"s).hostIsInstalled());
    EXPECT_THAT(fake_.log.lines, IsEmpty());
}

TEST_F(PhotoshopHostModelTest, AMissingPathsFileIsTriedFourTimes) {
    expectNoPaths(hostOfPathsFile());
    EXPECT_EQ(reads_, 4);
    EXPECT_THAT(fake_.clock.sleeps, SizeIs(3));
    EXPECT_THAT(fake_.clock.sleeps, Each(std::chrono::microseconds(500'000)));
    EXPECT_THAT(fake_.log.lines, SizeIs(3));
    const std::string reason = fake_.memory.read("/missing", 1).error().message();
    EXPECT_THAT(fake_.log.lines, Each("Could not open paths file: " + preferences +
                                      "Adobe Photoshop CS6 Paths: " + reason));
}

TEST_F(PhotoshopHostModelTest, AnUnreadablePathsFileStillGivesASelectedHostOfThatName) {
    const PhotoshopHostModel host = hostOfPathsFile();
    EXPECT_EQ(host.hostName(), "Adobe Photoshop CS6");
    EXPECT_TRUE(host.hostIsSelected());
}

TEST_F(PhotoshopHostModelTest, AFolderInPlaceOfThePathsFileCannotBeOpened) {
    fake_.memory.addFolder(preferences + "Adobe Photoshop CS6 Paths");
    expectNoPaths(hostOfPathsFile());
    EXPECT_THAT(fake_.log.lines, SizeIs(3));
}

TEST_F(PhotoshopHostModelTest, AFifoInPlaceOfThePathsFileCannotBeOpened) {
    fake_.memory.addOther(preferences + "Adobe Photoshop CS6 Paths");
    expectNoPaths(hostOfPathsFile());
    EXPECT_THAT(fake_.log.lines, SizeIs(3));
}

TEST_F(PhotoshopHostModelTest, AReadErrorCountsAsAFileThatCannotBeOpened) {
    fake_.memory.addFile(preferences + "Adobe Photoshop CS6 Paths", "/Photoshop\0"s);
    fake_.files.setFault([](const RecordingFileManager::Operation& operation) {
        return operation.front() == "read" ? std::make_error_code(std::errc::io_error)
                                           : std::error_code{};
    });
    expectNoPaths(hostOfPathsFile());
    EXPECT_THAT(fake_.log.lines, SizeIs(3));
}

TEST_F(PhotoshopHostModelTest, APathsFileThatAppearsDuringTheLastWaitIsRead) {
    fake_.clock.duringSleep = [this] {
        if (fake_.clock.sleeps.size() == 3) {
            fake_.memory.addFile(preferences + "Adobe Photoshop CS6 Paths", "/Photoshop\0"s);
        }
    };
    EXPECT_EQ(hostOfPathsFile().appPath(), "/Photoshop");
    EXPECT_EQ(reads_, 4);
    EXPECT_THAT(fake_.log.lines, SizeIs(3));
}

TEST_F(PhotoshopHostModelTest, APathsFileThatAppearsDuringTheFirstWaitEndsTheRetries) {
    fake_.clock.duringSleep = [this] {
        fake_.memory.addFile(preferences + "Adobe Photoshop CS6 Paths", "/Photoshop\0"s);
    };
    EXPECT_EQ(hostOfPathsFile().appPath(), "/Photoshop");
    EXPECT_EQ(reads_, 2);
    EXPECT_THAT(fake_.log.lines, SizeIs(1));
}

TEST_F(PhotoshopHostModelTest, AHugeFileGivesTheStringsAtItsStart) {
    fake_.memory.addFolder("/Photoshop/Photoshop.app");
    const PhotoshopHostModel host =
        hostOf("/Photoshop\0/Plug-Ins\0"s + std::string(std::size_t{4} << 20U, 'x'));
    EXPECT_EQ(host.appPath(), "/Photoshop");
    EXPECT_EQ(host.plugInPath(), "/Plug-Ins");
    EXPECT_TRUE(host.hostIsInstalled());
}

TEST_F(PhotoshopHostModelTest, AHugeStringIsNotKeptWhole) {
    const PhotoshopHostModel host = hostOf("/" + std::string(std::size_t{4} << 20U, 'x'));
    EXPECT_LE(host.appPath().size(), std::size_t{64} << 10U);
    EXPECT_FALSE(host.hostIsInstalled());
}

TEST_F(PhotoshopHostModelTest, ReleasesFrom2019OnNeverTouchAPathsFile) {
    fake_.memory.addFile(preferences + "Adobe Photoshop CC 2019 Paths", "/Other\0/Place\0"s);
    fake_.memory.addFolder("/Applications/Adobe Photoshop CC 2019/Adobe Photoshop CC 2019.app");
    const PhotoshopHostModel host =
        PhotoshopHostModel::initWithHostName(fake_.platform, "Adobe Photoshop CC 2019");
    EXPECT_EQ(host.hostName(), "Adobe Photoshop CC 2019");
    EXPECT_EQ(host.appPath(), "/Applications/Adobe Photoshop CC 2019");
    EXPECT_EQ(host.plugInPath(), sharedPlugIns);
    EXPECT_EQ(host.scriptsPath(), "/Applications/Adobe Photoshop CC 2019/Presets/Scripts");
    EXPECT_EQ(host.panelsPath(), sharedPlugIns + "/Panels");
    EXPECT_TRUE(host.hostIsInstalled());
    EXPECT_TRUE(host.hostIsSelected());
    EXPECT_EQ(reads_, 0);
}

TEST_F(PhotoshopHostModelTest, AReleaseFrom2019OnIsNotInstalledWithoutAnApplication) {
    const PhotoshopHostModel host =
        PhotoshopHostModel::initWithHostName(fake_.platform, "Adobe Photoshop CC 2020");
    EXPECT_FALSE(host.hostIsInstalled());
    EXPECT_TRUE(host.hostIsSelected());
    EXPECT_EQ(host.plugInPath(), sharedPlugIns);
}

TEST_F(PhotoshopHostModelTest, ANegativeVersionIsAReleaseFrom2019On) {
    const PhotoshopHostModel host =
        PhotoshopHostModel::initWithHostName(fake_.platform, "Adobe Photoshop CS-3");
    EXPECT_EQ(host.appPath(), "/Applications/Adobe Photoshop CS-3");
    EXPECT_EQ(reads_, 0);
}

TEST_F(PhotoshopHostModelTest, OlderReleasesReadThePathsFileOfTheirName) {
    fake_.memory.addFile(preferences + "Adobe Photoshop CC 2018 Paths", "/Photoshop\0"s);
    const PhotoshopHostModel host =
        PhotoshopHostModel::initWithHostName(fake_.platform, "Adobe Photoshop CC 2018");
    EXPECT_EQ(host.appPath(), "/Photoshop");
    EXPECT_TRUE(host.hostIsSelected());
}

TEST_F(PhotoshopHostModelTest, ANameWithoutSuiteHasVersionZeroAndReadsItsPathsFile) {
    fake_.memory.addFile(preferences + "Adobe Photoshop 2020 Paths", "/Photoshop\0/Plug-Ins\0"s);
    const PhotoshopHostModel host =
        PhotoshopHostModel::initWithHostName(fake_.platform, "Adobe Photoshop 2020");
    EXPECT_EQ(host.appPath(), "/Photoshop");
    EXPECT_EQ(host.plugInPath(), "/Plug-Ins");
}

TEST_F(PhotoshopHostModelTest, AUserWithoutHomeHasNoPathsFile) {
    fake_.searchPaths.home.reset();
    expectNoPaths(PhotoshopHostModel::initWithHostName(fake_.platform, "Adobe Photoshop CS6"));
    EXPECT_THAT(fake_.log.lines, SizeIs(3));
}

TEST_F(PhotoshopHostModelTest, FixedFoldersLieOnTheTargetVolume) {
    fake_.searchPaths.volume = "/Volumes/Other";
    fake_.memory.addFolder("/Volumes/Other/Applications/Adobe Photoshop CC 2019/Photoshop.app");
    const PhotoshopHostModel host =
        PhotoshopHostModel::initWithHostName(fake_.platform, "Adobe Photoshop CC 2019");
    EXPECT_EQ(host.appPath(), "/Volumes/Other/Applications/Adobe Photoshop CC 2019");
    EXPECT_EQ(host.plugInPath(), "/Volumes/Other" + sharedPlugIns);
    EXPECT_TRUE(host.hostIsInstalled());
}

TEST_F(PhotoshopHostModelTest, PathsInAPathsFileAreMeantOnTheTargetVolume) {
    fake_.searchPaths.volume = "/Volumes/Other";
    fake_.memory.addFolder("/Volumes/Other/Photoshop/Photoshop.app");
    const PhotoshopHostModel host = hostOf("/Photoshop\0/Plug-Ins\0"s);
    EXPECT_EQ(host.appPath(), "/Volumes/Other/Photoshop");
    EXPECT_EQ(host.plugInPath(), "/Volumes/Other/Plug-Ins");
    EXPECT_TRUE(host.hostIsInstalled());
}

TEST_F(PhotoshopHostModelTest, ARelativePathNamesNothingOnTheTargetVolumeEither) {
    fake_.searchPaths.volume = "/Volumes/Other";
    fake_.memory.addFolder("/Volumes/OtherPhotoshop/Photoshop.app");
    fake_.memory.addFolder("/Volumes/Other/OtherPhotoshop/Photoshop.app");
    const PhotoshopHostModel host = hostOf("Photoshop\0/Plug-Ins\0"s);
    EXPECT_EQ(host.appPath(), "Photoshop");
    EXPECT_FALSE(host.hostIsInstalled());
}

}  // namespace

}  // namespace installer::test
