#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "steps/hosts/HostsModel.h"
#include "tests/hosts/PhotoshopScene.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class HostsModelTest : public PhotoshopScene {};

TEST_F(HostsModelTest, FindsNothingOnAMachineWithoutAdobe) {
    const HostsModel hosts(fake_.platform);
    EXPECT_THAT(hosts.hostsArray(), IsEmpty());
    EXPECT_THAT(hosts.foundHosts(), IsEmpty());
    EXPECT_THAT(fake_.log.lines, IsEmpty());
    EXPECT_THAT(fake_.journal, IsEmpty());
}

TEST_F(HostsModelTest, ListsWhatIsDiscoveredAndOffersTheInstalledOnesInDisplayOrder) {
    addPhotoshop("Adobe Photoshop CC 2017");
    fake_.memory.addFile(adobeSupport + "Adobe Photoshop CC 2015 Paths", "/Photoshop\0"s);
    addPhotoshop("Adobe Photoshop CS6");
    const HostsModel hosts(fake_.platform);
    EXPECT_THAT(
        names(hosts.hostsArray()),
        ElementsAre("Adobe Photoshop CC 2015", "Adobe Photoshop CC 2017", "Adobe Photoshop CS6"));
    EXPECT_THAT(names(hosts.foundHosts()),
                ElementsAre("Adobe Photoshop CS6", "Adobe Photoshop CC 2017"));
}

/// Notes each read of a setting and of a text in one list.
class NotedPreferences : public FakePreferencesStore {
  public:
    explicit NotedPreferences(std::vector<std::string>& notes) : notes_(notes) {}
    std::optional<PreferenceValue> value(const std::string& domain,
                                         const std::string& key) override {
        notes_.push_back(domain + " " + key);
        return FakePreferencesStore::value(domain, key);
    }

  private:
    std::vector<std::string>& notes_;
};

class NotedTexts : public FakeBundle {
  public:
    explicit NotedTexts(std::vector<std::string>& notes) : notes_(notes) {}
    std::optional<std::string> localizedString(const std::string& key,
                                               const std::string& table) const override {
        if (notes_.back() != "texts") notes_.emplace_back("texts");
        return FakeBundle::localizedString(key, table);
    }

  private:
    std::vector<std::string>& notes_;
};

TEST_F(HostsModelTest, ReadsTheRememberedFolderThenTheTextsThenTheFolders) {
    std::vector<std::string> notes = {"start"};
    NotedPreferences settings(notes);
    NotedTexts texts(notes);
    fake_.files.setFault([&](const RecordingFileManager::Operation& operation) {
        notes.push_back(operation.front() + " " + operation[1]);
        return std::error_code{};
    });
    const Platform made = fake_.platform;
    Platform platform = {made.files,
                         made.fileQueries,
                         made.authorizations,
                         made.processes,
                         made.eventLoop,
                         settings,
                         texts,
                         made.bundles,
                         made.searchPaths,
                         made.applications,
                         made.alerts,
                         made.log,
                         made.clock,
                         made.notifications};
    const HostsModel hosts(platform);
    EXPECT_THAT(notes, ElementsAre("start", "com.quarrytone.installer customPath",
                                   "com.quarrytone.installer customPath64", "texts",
                                   "list /Users/tester/Library/Preferences",
                                   "list /Users/tester/Library/Application Support/Adobe"));
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

}  // namespace

}  // namespace installer::test
