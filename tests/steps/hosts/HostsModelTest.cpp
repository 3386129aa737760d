#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "steps/hosts/HostsModel.h"
#include "tests/hosts/RowName.h"
#include "tests/support/FakePlatform.h"

namespace installer {

namespace {

using namespace std::string_literals;
using test::FakePlatform;
using test::rowName;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::string preferences = "/Users/tester/Library/Preferences/";
const std::string adobeSupport = "/Users/tester/Library/Application Support/Adobe/";
const std::string domain = "com.quarrytone.installer";

std::vector<std::string> names(const std::vector<HostModel>& hosts) {
    std::vector<std::string> all;
    all.reserve(hosts.size());
    for (const HostModel& host : hosts) all.push_back(host.hostName());
    return all;
}

class HostsModelTest : public testing::Test {
  protected:
    /// A Photoshop whose application is there, with its paths file in the folder.
    void addPhotoshop(const std::string& name, const std::string& folder = preferences) {
        const std::string application = "/Applications/" + name;
        fake_.memory.addFolder(application + "/" + name + ".app");
        fake_.memory.addFile(folder + name + " Paths", application + "\0"s);
    }

    std::vector<std::string> discovered() { return names(HostsModel(fake_.platform).hostsArray()); }
    std::vector<std::string> found() { return names(HostsModel(fake_.platform).foundHosts()); }

    FakePlatform fake_;
};

TEST_F(HostsModelTest, FindsNothingOnAMachineWithoutAdobe) {
    const HostsModel hosts(fake_.platform);
    EXPECT_THAT(hosts.hostsArray(), IsEmpty());
    EXPECT_THAT(hosts.foundHosts(), IsEmpty());
    EXPECT_THAT(fake_.log.lines, IsEmpty());
    EXPECT_THAT(fake_.journal, IsEmpty());
}

TEST_F(HostsModelTest, FindsNothingForAUserWithoutHome) {
    addPhotoshop("Adobe Photoshop CS6");
    fake_.searchPaths.home.reset();
    EXPECT_THAT(discovered(), IsEmpty());
    EXPECT_THAT(fake_.log.lines, IsEmpty());
}

TEST_F(HostsModelTest, FindsPathsFilesInBothFoldersAdobesOwnFirst) {
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

TEST_F(HostsModelTest, NamesAPathsFileInTheLogBeforeItIsRead) {
    addPhotoshop("Adobe Photoshop CS6");
    std::vector<std::string> linesWhenRead;
    fake_.files.setFault([&](const test::RecordingFileManager::Operation& operation) {
        if (operation.front() == "read") linesWhenRead = fake_.log.lines;
        return std::error_code{};
    });
    EXPECT_THAT(discovered(), SizeIs(1));
    EXPECT_THAT(linesWhenRead,
                ElementsAre("Found path file " + preferences + "Adobe Photoshop CS6 Paths"));
}

TEST_F(HostsModelTest, AFolderThatCannotBeListedContributesNothing) {
    addPhotoshop("Adobe Photoshop CS6");
    addPhotoshop("Adobe Photoshop CC", adobeSupport);
    fake_.files.setFault([](const test::RecordingFileManager::Operation& operation) {
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

class HostsModelDiscoveredFile : public testing::TestWithParam<FileRow> {};

TEST_P(HostsModelDiscoveredFile, IsListedByItsName) {
    FakePlatform fake;
    fake.memory.addFile(preferences + GetParam().file, "/Photoshop\0/Plug-Ins\0"s);
    EXPECT_THAT(HostsModel(fake.platform).hostsArray(), SizeIs(GetParam().listed ? 1 : 0));
}

INSTANTIATE_TEST_SUITE_P(
    PathsFiles, HostsModelDiscoveredFile,
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

INSTANTIATE_TEST_SUITE_P(SettingsFiles, HostsModelDiscoveredFile,
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

TEST_F(HostsModelTest, ASettingsFileGivesAHostWithTheFixedFolders) {
    fake_.memory.addFolder(preferences + "Adobe Photoshop CC 2019 Settings");
    fake_.memory.addFolder("/Applications/Adobe Photoshop CC 2019/Adobe Photoshop CC 2019.app");
    const HostsModel hosts(fake_.platform);
    ASSERT_THAT(hosts.foundHosts(), SizeIs(1));
    const auto* host = hosts.foundHosts().front().as<PhotoshopHostModel>();
    ASSERT_NE(host, nullptr);
    EXPECT_EQ(host->hostName(), "Adobe Photoshop CC 2019");
    EXPECT_EQ(host->appPath(), "/Applications/Adobe Photoshop CC 2019");
    EXPECT_EQ(host->plugInPath(), "/Library/Application Support/Adobe/Plug-Ins/CC");
    EXPECT_THAT(fake_.log.lines, IsEmpty());
}

TEST_F(HostsModelTest, SettingsFilesInAdobesSupportFolderAreIgnored) {
    fake_.memory.addFile(adobeSupport + "Adobe Photoshop CC 2019 Settings");
    EXPECT_THAT(discovered(), IsEmpty());
}

TEST_F(HostsModelTest, AnOlderSettingsFileWaitsForItsPathsFileBeforeItIsDropped) {
    fake_.memory.addFile(preferences + "Adobe Photoshop CC 2018 Settings");
    EXPECT_THAT(discovered(), IsEmpty());
    EXPECT_THAT(fake_.clock.sleeps, SizeIs(3));
    EXPECT_THAT(fake_.log.lines, SizeIs(3));
}

TEST_F(HostsModelTest, EverySettingsInTheNameIsDropped) {
    fake_.memory.addFile(preferences + "Adobe Settings Photoshop CC 2019 Settings");
    EXPECT_THAT(discovered(), ElementsAre("Adobe Photoshop CC 2019"));
}

TEST_F(HostsModelTest, AFileThatIsBothKindsIsListedTwice) {
    fake_.memory.addFile(preferences + "Adobe Photoshop CC 2019 Settings Paths",
                         "/Photoshop\0/Plug-Ins\0"s);
    EXPECT_THAT(discovered(),
                ElementsAre("Adobe Photoshop CC 2019 Settings", "Adobe Photoshop CC 2019 Paths"));
}

TEST_F(HostsModelTest, AReleaseWithBothFilesIsOfferedTwice) {
    fake_.memory.addFile(preferences + "Adobe Photoshop CC 2019 Settings");
    addPhotoshop("Adobe Photoshop CC 2019");
    EXPECT_THAT(found(), ElementsAre("Adobe Photoshop CC 2019", "Adobe Photoshop CC 2019"));
    addPhotoshop("Adobe Photoshop CC 2019", adobeSupport);
    EXPECT_THAT(found(), SizeIs(3));
}

TEST_F(HostsModelTest, AnUnreadablePathsFileIsListedButNotOffered) {
    fake_.memory.addFolder(preferences + "Adobe Photoshop CS6 Paths");
    fake_.memory.addOther(preferences + "Adobe Photoshop CC Paths");
    const HostsModel hosts(fake_.platform);
    EXPECT_THAT(names(hosts.hostsArray()),
                ElementsAre("Adobe Photoshop CS6", "Adobe Photoshop CC"));
    EXPECT_THAT(hosts.foundHosts(), IsEmpty());
    EXPECT_THAT(fake_.clock.sleeps, SizeIs(6));
}

TEST_F(HostsModelTest, AnOldPathsFileThatCannotBeReadIsWaitedForAsWell) {
    fake_.memory.addFolder(preferences + "Adobe Photoshop CS3 Paths");
    EXPECT_THAT(discovered(), IsEmpty());
    EXPECT_THAT(fake_.clock.sleeps, SizeIs(3));
}

TEST_F(HostsModelTest, OffersTheSuitesBeforeTheYearReleasesNewestFirst) {
    for (const char* name :
         {"Adobe Photoshop CC 2014", "Adobe Photoshop CS6", "Adobe Photoshop CC 2015.5",
          "Adobe Photoshop CC", "Adobe Photoshop CC 2017"}) {
        addPhotoshop(name);
    }
    EXPECT_THAT(found(),
                ElementsAre("Adobe Photoshop CC", "Adobe Photoshop CS6", "Adobe Photoshop CC 2017",
                            "Adobe Photoshop CC 2015.5", "Adobe Photoshop CC 2014"));
}

TEST_F(HostsModelTest, HostsOfEqualOrderStayInTheOrderOfDiscovery) {
    addPhotoshop("Adobe Photoshop CC 2015.5");
    addPhotoshop("Adobe Photoshop CC 2015");
    addPhotoshop("Adobe Photoshop CC 2015.1", adobeSupport);
    EXPECT_THAT(found(), ElementsAre("Adobe Photoshop CC 2015.1", "Adobe Photoshop CC 2015.5",
                                     "Adobe Photoshop CC 2015"));
}

TEST_F(HostsModelTest, OffersTheHostsThemselves) {
    addPhotoshop("Adobe Photoshop CS6");
    const HostsModel hosts(fake_.platform);
    hosts.foundHosts().front().as<PhotoshopHostModel>()->setHostIsSelected(false);
    EXPECT_EQ(hosts.foundHosts().front().booleanNamed("hostIsSelected"), false);
    EXPECT_EQ(hosts.foundHosts().front(), hosts.hostsArray().front());
}

TEST_F(HostsModelTest, DiscoveryIsNotRepeated) {
    const HostsModel hosts(fake_.platform);
    addPhotoshop("Adobe Photoshop CS6");
    EXPECT_THAT(hosts.foundHosts(), IsEmpty());
}

TEST_F(HostsModelTest, NeverOffersHostsForScriptsAndPanels) {
    addPhotoshop("Adobe Photoshop CS6");
    addPhotoshop("Adobe Photoshop CC 2017");
    const HostsModel hosts(fake_.platform);
    ASSERT_THAT(hosts.foundHosts(), SizeIs(2));
    EXPECT_THAT(hosts.scriptsOrPanelsHosts(), IsEmpty());
}

TEST_F(HostsModelTest, TheListNeverStartsWithARememberedCustomFolder) {
    fake_.preferences.values[{domain, "customPath"}] = "/My Plug-Ins"s;
    fake_.preferences.values[{domain, "customPath64"}] = "/My Plug-Ins"s;
    EXPECT_THAT(HostsModel(fake_.platform).hostsArray(), IsEmpty());
    fake_.preferences.values.erase({domain, "customPath"});
    EXPECT_THAT(HostsModel(fake_.platform).hostsArray(), IsEmpty());
    fake_.preferences.values[{domain, "customPath"}] = true;
    EXPECT_THAT(HostsModel(fake_.platform).hostsArray(), IsEmpty());
    EXPECT_THAT(fake_.preferences.synchronized, IsEmpty());
}

TEST_F(HostsModelTest, AHostAddedAtRuntimeIsOfferedAndGoesWhenRemoved) {
    addPhotoshop("Adobe Photoshop CS6");
    HostsModel hosts(fake_.platform);
    const HostModel custom = UnknownHostModel(fake_.platform, "/My Plug-Ins");
    hosts.addHostAtRuntime(custom);
    ASSERT_THAT(hosts.foundHosts(), SizeIs(2));
    EXPECT_EQ(hosts.foundHosts().back(), custom);
    hosts.removeHostAtRuntime(custom);
    EXPECT_THAT(names(hosts.foundHosts()), ElementsAre("Adobe Photoshop CS6"));
}

TEST_F(HostsModelTest, RemovesEveryEntryOfAHostAndNoTwin) {
    HostsModel hosts(fake_.platform);
    const HostModel custom = UnknownHostModel(fake_.platform, "/My Plug-Ins");
    const HostModel twin = UnknownHostModel(fake_.platform, "/My Plug-Ins");
    hosts.addHostAtRuntime(custom);
    hosts.addHostAtRuntime(twin);
    hosts.addHostAtRuntime(custom);
    hosts.removeHostAtRuntime(hosts.hostsArray().front());
    EXPECT_THAT(hosts.hostsArray(), ElementsAre(twin));
}

TEST_F(HostsModelTest, RemovingAHostThatIsNotListedChangesNothing) {
    addPhotoshop("Adobe Photoshop CS6");
    HostsModel hosts(fake_.platform);
    hosts.removeHostAtRuntime(UnknownHostModel(fake_.platform, "/My Plug-Ins"));
    EXPECT_THAT(hosts.foundHosts(), SizeIs(1));
}

TEST_F(HostsModelTest, OffersNothingWhenAnInstalledHostHasNoOrder) {
    addPhotoshop("Adobe Photoshop CS6");
    HostsModel hosts(fake_.platform);
    hosts.addHostAtRuntime(FireworksHostModel(fake_.platform, "Adobe Fireworks CS6"));
    EXPECT_THAT(hosts.foundHosts(), SizeIs(1));
    fake_.memory.addFolder("/Applications/Adobe Fireworks CS6/Plug-Ins");
    EXPECT_THAT(hosts.foundHosts(), IsEmpty());
}

TEST_F(HostsModelTest, ReadsItsTextsFromTheDefaultTable) {
    fake_.bundle.tables["Localizable"] = {{"select_host", "Select"},
                                          {"host_selection", "Hosts"},
                                          {"select_host_instructions", "%@ goes into these. %2$@!"},
                                          {"custom_install_browse_button", "Browse"},
                                          {"custom_install_label_path", "Folder"},
                                          {"custom_install_button", "Custom"},
                                          {"custom_install_panels_checkbox", "Panels"},
                                          {"custom_install_host_label", "From"}};
    const HostsModel hosts(fake_.platform);
    EXPECT_EQ(hosts.mainLabelText(), "Select");
    EXPECT_EQ(hosts.stepIndicatorLabelText(), "Hosts");
    EXPECT_EQ(hosts.informativeText(), PlainOrStyledText("Filters 2 goes into these. Filters 2!"));
    EXPECT_EQ(hosts.customInstallBrowseButtonText(), "Browse");
    EXPECT_EQ(hosts.customInstallPathLabelText(), "Folder");
    EXPECT_EQ(hosts.customInstallButtonText(), "Custom");
    EXPECT_EQ(hosts.customInstallCheckBoxText(), "Panels");
    EXPECT_EQ(hosts.customInstallHostsExplanationText(), "From");
}

TEST_F(HostsModelTest, MissingTextsAreEmpty) {
    const HostsModel hosts(fake_.platform);
    EXPECT_EQ(hosts.mainLabelText(), "");
    EXPECT_EQ(hosts.stepIndicatorLabelText(), "");
    EXPECT_EQ(hosts.informativeText(), PlainOrStyledText(""));
    EXPECT_EQ(hosts.customInstallBrowseButtonText(), "");
    EXPECT_EQ(hosts.customInstallPathLabelText(), "");
    EXPECT_EQ(hosts.customInstallButtonText(), "");
    EXPECT_EQ(hosts.customInstallCheckBoxText(), "");
    EXPECT_EQ(hosts.customInstallHostsExplanationText(), "");
}

TEST_F(HostsModelTest, AMissingProductNameIsEmptyInTheInstructions) {
    fake_.bundle.tables = {{"Localizable", {{"select_host_instructions", "[%@][%@]"}}}};
    EXPECT_EQ(HostsModel(fake_.platform).informativeText(), PlainOrStyledText("[][]"));
}

TEST_F(HostsModelTest, FileNamesWithPercentSignsAreLoggedAsTheyAre) {
    fake_.memory.addFile(preferences + "Adobe %@ %s CS6 Paths", "/Photoshop\0"s);
    EXPECT_THAT(discovered(), ElementsAre("Adobe %@ %s CS6"));
    EXPECT_TRUE(fake_.log.has("Found path file " + preferences + "Adobe %@ %s CS6 Paths"));
}

TEST_F(HostsModelTest, LooksInTheUsersFoldersOnTheTargetVolume) {
    addPhotoshop("Adobe Photoshop CS6");
    fake_.searchPaths.volume = "/Volumes/Other";
    fake_.memory.addFile("/Volumes/Other" + preferences + "Adobe Photoshop CC Paths",
                         "/Applications/Adobe Photoshop CC\0"s);
    fake_.memory.addFolder("/Volumes/Other/Applications/Adobe Photoshop CC/Photoshop.app");
    EXPECT_THAT(found(), ElementsAre("Adobe Photoshop CC"));
}

}  // namespace

}  // namespace installer
