#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "product/PlugInFilesModel.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct PathRow {
    std::string operation;
    std::string (PlugInFilesModel::*path)() const;
    std::string expected;
};

class PlugInFilesPaths : public testing::TestWithParam<PathRow> {
  protected:
    [[nodiscard]] std::string path() const { return (model_.*GetParam().path)(); }

    FakePlatform fake_;
    PlugInFilesModel model_{fake_.platform};
};

class PlugInFilesModelBundlePath : public PlugInFilesPaths {};
class PlugInFilesModelMachinePath : public PlugInFilesPaths {};
class PlugInFilesModelUserPath : public PlugInFilesPaths {};

TEST_P(PlugInFilesModelBundlePath, LiesInTheRunningBundleWhateverTheTargetVolume) {
    fake_.searchPaths.volume = "/Volumes/Other";
    fake_.bundle.folder = "/Media/My Installer.app";
    EXPECT_EQ(path(), "/Media/My Installer.app" + GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Operations, PlugInFilesModelBundlePath,
    testing::Values(
        PathRow{"getPlugInDirInBundle", &PlugInFilesModel::getPlugInDirInBundle,
                "/Contents/SharedSupport/PlugIn"},
        PathRow{"getAutoLayerDirInBundle", &PlugInFilesModel::getAutoLayerDirInBundle,
                "/Contents/SharedSupport/AutoLayer"},
        PathRow{"getStandAloneAppsDirInBundle", &PlugInFilesModel::getStandAloneAppsDirInBundle,
                "/Contents/SharedSupport/Standalone"},
        PathRow{"payloadFolder", &PlugInFilesModel::payloadFolder, "/Contents/Resources/files"}),
    [](const auto& row) { return row.param.operation; });

TEST_P(PlugInFilesModelMachinePath, LiesInTheMachineWideFolders) {
    EXPECT_EQ(path(), GetParam().expected);
}

TEST_P(PlugInFilesModelMachinePath, LiesOnTheTargetVolume) {
    fake_.searchPaths.volume = "/Volumes/Other";
    EXPECT_EQ(path(), "/Volumes/Other" + GetParam().expected);
}

TEST_P(PlugInFilesModelMachinePath, DoesNotNeedAUsersHome) {
    fake_.searchPaths.home.reset();
    EXPECT_EQ(path(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Operations, PlugInFilesModelMachinePath,
    testing::Values(PathRow{"companyAppSupportPath", &PlugInFilesModel::companyAppSupportPath,
                            "/Library/Application Support/Acme"},
                    PathRow{"productAppSupportPath", &PlugInFilesModel::productAppSupportPath,
                            "/Library/Application Support/Acme/Filters 2"},
                    PathRow{"settingsInstallPath", &PlugInFilesModel::settingsInstallPath,
                            "/Library/Application Support/Acme/Filters 2"},
                    PathRow{"standAloneAppsInstallPath",
                            &PlugInFilesModel::standAloneAppsInstallPath, "/Applications"},
                    PathRow{"installerLogPath", &PlugInFilesModel::installerLogPath,
                            "/Library/Application Support/Acme/Filters 2 Installer.log"}),
    [](const auto& row) { return row.param.operation; });

TEST_P(PlugInFilesModelUserPath, LiesInTheUsersApplicationSupport) {
    EXPECT_EQ(path(), "/Users/tester/Library/Application Support" + GetParam().expected);
}

TEST_P(PlugInFilesModelUserPath, LiesOnTheTargetVolume) {
    fake_.searchPaths.volume = "/Volumes/Other";
    EXPECT_EQ(path(),
              "/Volumes/Other/Users/tester/Library/Application Support" + GetParam().expected);
}

TEST_P(PlugInFilesModelUserPath, IsEmptyForAUserWithoutHome) {
    fake_.searchPaths.home.reset();
    EXPECT_EQ(path(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Operations, PlugInFilesModelUserPath,
    testing::Values(
        PathRow{"productUserAppSupportPath", &PlugInFilesModel::productUserAppSupportPath,
                "/Acme/Filters 2"},
        PathRow{"userCompanyAppSupportPath", &PlugInFilesModel::userCompanyAppSupportPath, "/Acme"},
        PathRow{"userSettingsPath", &PlugInFilesModel::userSettingsPath, "/Acme/Filters 2"},
        PathRow{"lightRoomSupportPath", &PlugInFilesModel::lightRoomSupportPath,
                "/Adobe/Lightroom"},
        PathRow{"lightRoomPresetDir", &PlugInFilesModel::lightRoomPresetDir,
                "/Adobe/Lightroom/External Editor Presets"},
        PathRow{"apertureUserPluginDir", &PlugInFilesModel::apertureUserPluginDir,
                "/Aperture/Plug-Ins"}),
    [](const auto& row) { return row.param.operation; });

class PlugInFilesModelTest : public testing::Test {
  protected:
    /// Puts a value under "User Folder" into the product's own settings.
    void setUserFolder(const PreferenceValue& folder, const std::string& domain = "com.acme") {
        fake_.bundle.tables["installer"]["app_plist"] = "com.acme";
        fake_.preferences.values[{domain, "User Folder"}] = folder;
    }

    FakePlatform fake_;
    PlugInFilesModel model_{fake_.platform};
};

constexpr const char* userFallback = "/Users/tester/Library/Application Support/Acme/Filters 2";

TEST_F(PlugInFilesModelTest, AnotherProductOfTheMakerHasAFolderBesideIt) {
    EXPECT_EQ(model_.appSupportPathForProduct("Prismor X"),
              "/Library/Application Support/Acme/Prismor X");
    EXPECT_EQ(model_.userAppSupportPathForProduct("Prismor X"),
              "/Users/tester/Library/Application Support/Acme/Prismor X");
}

TEST_F(PlugInFilesModelTest, NothingOfAnotherProductIsKnownForAUserWithoutHome) {
    fake_.searchPaths.home.reset();
    EXPECT_EQ(model_.userAppSupportPathForProduct("Prismor X"), "");
}

TEST_F(PlugInFilesModelTest, ASuffixIsJoinedToTheSharedSupportFolder) {
    EXPECT_EQ(model_.getSharedSupportPathInBundleWithSuffix("Extras"),
              "/Installer.app/Contents/SharedSupport/Extras");
    EXPECT_EQ(model_.getSharedSupportPathInBundleWithSuffix("/Extras/"),
              "/Installer.app/Contents/SharedSupport/Extras");
}

TEST_F(PlugInFilesModelTest, AMissingNameGivesItsKeyAsTheFolder) {
    fake_.bundle.tables.clear();
    EXPECT_EQ(model_.productAppSupportPath(),
              "/Library/Application Support/company_name/product_name");
    EXPECT_EQ(model_.installerLogPath(),
              "/Library/Application Support/company_name/product_name Installer.log");
    EXPECT_EQ(model_.productUserAppSupportPath(),
              "/Users/tester/Library/Application Support/company_name/product_name");
}

TEST_F(PlugInFilesModelTest, AnEmptyNameNeverWidensAPath) {
    fake_.bundle.tables["installer"]["company_name"] = "";
    fake_.bundle.tables["installer"]["product_name"] = "..";
    EXPECT_EQ(model_.productAppSupportPath(),
              "/Library/Application Support/company_name/product_name");
}

TEST_F(PlugInFilesModelTest, AChangedNameShowsAtOnce) {
    EXPECT_EQ(model_.companyAppSupportPath(), "/Library/Application Support/Acme");
    fake_.bundle.tables["installer"]["company_name"] = "\u5199\u771F \"%@\"";
    EXPECT_EQ(model_.companyAppSupportPath(), "/Library/Application Support/\u5199\u771F \"%@\"");
}

TEST_F(PlugInFilesModelTest, AProductNameWithAPlaceholderNamesTheLogAsItIs) {
    fake_.bundle.tables["installer"]["product_name"] = "100%@";
    EXPECT_EQ(model_.installerLogPath(), "/Library/Application Support/Acme/100%@ Installer.log");
}

TEST_F(PlugInFilesModelTest, ListsHiddenFilesAndFoldersInTheFileSystemsOrder) {
    fake_.memory.addFile("/Payload/b");
    fake_.memory.addFile("/Payload/.hidden");
    fake_.memory.addFile("/Payload/a folder/inside");
    EXPECT_THAT(model_.getFullPathsOfFilesInBundle("/Payload"),
                ElementsAre("/Payload/b", "/Payload/.hidden", "/Payload/a folder"));
    EXPECT_THAT(model_.getFullPathsOfFilesInBundle("/Payload/"),
                ElementsAre("/Payload/b", "/Payload/.hidden", "/Payload/a folder"));
}

TEST_F(PlugInFilesModelTest, AFolderThatCannotBeReadHasNoEntries) {
    fake_.memory.addFile("/File");
    EXPECT_THAT(model_.getFullPathsOfFilesInBundle("/Missing"), IsEmpty());
    EXPECT_THAT(model_.getFullPathsOfFilesInBundle("/File"), IsEmpty());
    EXPECT_THAT(model_.getFullPathsOfFilesInBundle(""), IsEmpty());
}

TEST_F(PlugInFilesModelTest, ListsThePlugInsOfTheBundle) {
    fake_.memory.addFolder("/Installer.app/Contents/SharedSupport/PlugIn/Filters.plugin");
    EXPECT_THAT(model_.getFullPathsOfPlugInsInBundle(),
                ElementsAre("/Installer.app/Contents/SharedSupport/PlugIn/Filters.plugin"));
}

TEST_F(PlugInFilesModelTest, UserSettingsLieInTheUserFolderWhenTheProductHasAFolderThere) {
    setUserFolder("/Users/tester/Documents/"s);
    fake_.memory.addFolder("/Users/tester/Documents/Acme/Filters 2");
    EXPECT_EQ(model_.userSettingsPath(), "/Users/tester/Documents/Acme/Filters 2");
}

TEST_F(PlugInFilesModelTest, AFileInPlaceOfTheUserSettingsCountsAsWell) {
    setUserFolder("/Users/tester/Documents"s);
    fake_.memory.addFile("/Users/tester/Documents/Acme/Filters 2");
    EXPECT_EQ(model_.userSettingsPath(), "/Users/tester/Documents/Acme/Filters 2");
}

TEST_F(PlugInFilesModelTest, AUserFolderWithoutTheProductsFolderIsNotUsed) {
    setUserFolder("/Users/tester/Documents"s);
    fake_.memory.addFolder("/Users/tester/Documents/Acme");
    EXPECT_EQ(model_.userSettingsPath(), userFallback);
}

TEST_F(PlugInFilesModelTest, AMissingEmptyRelativeOrWrongUserFolderIsNotUsed) {
    fake_.memory.addFolder("/Acme/Filters 2");
    EXPECT_EQ(model_.userSettingsPath(), userFallback);
    for (const PreferenceValue& value :
         {PreferenceValue(""s), PreferenceValue("Documents"s), PreferenceValue(true)}) {
        setUserFolder(value);
        EXPECT_EQ(model_.userSettingsPath(), userFallback);
    }
}

TEST_F(PlugInFilesModelTest, TheUserFolderComesFromTheProductsOwnDomain) {
    setUserFolder("/Users/tester/Documents"s, "com.quarrytone.installer");
    fake_.memory.addFolder("/Users/tester/Documents/Acme/Filters 2");
    EXPECT_EQ(model_.userSettingsPath(), userFallback);
    setUserFolder("/Users/tester/Documents"s);
    EXPECT_EQ(model_.userSettingsPath(), "/Users/tester/Documents/Acme/Filters 2");
}

TEST_F(PlugInFilesModelTest, WithoutADomainsNameTheKeyIsTheDomain) {
    fake_.preferences.values[{"app_plist", "User Folder"}] = "/Users/tester/Documents"s;
    fake_.memory.addFolder("/Users/tester/Documents/Acme/Filters 2");
    EXPECT_EQ(model_.userSettingsPath(), "/Users/tester/Documents/Acme/Filters 2");
}

TEST_F(PlugInFilesModelTest, TheUserFolderIsMeantOnTheTargetVolume) {
    setUserFolder("/Documents"s);
    fake_.searchPaths.volume = "/Volumes/Other";
    fake_.memory.addFolder("/Documents/Acme/Filters 2");
    EXPECT_EQ(model_.userSettingsPath(), "/Volumes/Other"s + userFallback);
    fake_.memory.addFolder("/Volumes/Other/Documents/Acme/Filters 2");
    EXPECT_EQ(model_.userSettingsPath(), "/Volumes/Other/Documents/Acme/Filters 2");
}

TEST_F(PlugInFilesModelTest, ReadingSettingsWritesNothing) {
    setUserFolder("/Users/tester/Documents"s);
    EXPECT_EQ(model_.userSettingsPath(), userFallback);
    EXPECT_THAT(fake_.preferences.synchronized, IsEmpty());
    EXPECT_THAT(fake_.journal, IsEmpty());
}

TEST_F(PlugInFilesModelTest, TheCurrentLocaleIsTheFirstPreferredLanguage) {
    fake_.searchPaths.languages = {"de-DE", "en"};
    EXPECT_TRUE(model_.IsCurrentLocale("de-DE"));
    EXPECT_TRUE(model_.IsCurrentLocale("DE-de"));
    EXPECT_FALSE(model_.IsCurrentLocale("de"));
    EXPECT_FALSE(model_.IsCurrentLocale("en"));
    EXPECT_FALSE(model_.IsCurrentLocale(""));
}

TEST_F(PlugInFilesModelTest, WithoutPreferredLanguagesThereIsNoCurrentLocale) {
    fake_.searchPaths.languages.clear();
    EXPECT_FALSE(model_.IsCurrentLocale("en"));
    EXPECT_FALSE(model_.IsCurrentLocale(""));
}

TEST_F(PlugInFilesModelTest, TheUsersFoldersAreNoneWithoutAHome) {
    EXPECT_EQ(NSUserPreferencesDirectory(fake_.platform), "/Users/tester/Library/Preferences");
    EXPECT_EQ(ApplicationSupportDirectory(fake_.platform),
              "/Users/tester/Library/Application Support");
    fake_.searchPaths.home.reset();
    EXPECT_EQ(NSUserPreferencesDirectory(fake_.platform), std::nullopt);
    EXPECT_EQ(ApplicationSupportDirectory(fake_.platform), std::nullopt);
}

}  // namespace

}  // namespace installer::test
