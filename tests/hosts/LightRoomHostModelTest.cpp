#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "hosts/LightRoomHostModel.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

namespace {

constexpr const char* supportFolder = "/Users/tester/Library/Application Support/Adobe/Lightroom";
constexpr const char* identifier = "[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}";

/// The preset with every identifier replaced by a mark.
std::string withoutIdentifier(const std::string& preset) {
    return std::regex_replace(preset, std::regex(identifier), "ID");
}

TEST(LightRoomHostModel, IsInstalledWhenItsPresetFolderExists) {
    FakePlatform fake;
    fake.memory.addFolder(std::string(supportFolder) + "/External Editor Presets");
    EXPECT_TRUE(LightRoomHostModel(fake.platform, "Lightroom 5").hostIsInstalled());
}

TEST(LightRoomHostModel, ItsSupportFolderAloneDoesNotInstallIt) {
    FakePlatform fake;
    fake.memory.addFolder(supportFolder);
    EXPECT_FALSE(LightRoomHostModel(fake.platform, "Lightroom 5").hostIsInstalled());
}

TEST(LightRoomHostModel, IsNotInstalledForAUserWithoutHome) {
    FakePlatform fake;
    fake.searchPaths.home.reset();
    EXPECT_FALSE(LightRoomHostModel(fake.platform, "Lightroom 5").hostIsInstalled());
}

TEST(LightRoomHostModel, LooksOnlyOnceWhetherItIsInstalled) {
    FakePlatform fake;
    const LightRoomHostModel host(fake.platform, "Lightroom 5");
    fake.memory.addFolder(std::string(supportFolder) + "/External Editor Presets");
    EXPECT_FALSE(host.hostIsInstalled());
}

TEST(LightRoomHostModel, HasANameAndASelectionAndNoFolders) {
    FakePlatform fake;
    LightRoomHostModel host(fake.platform, "Lightroom 5");
    EXPECT_EQ(host.hostName(), "Lightroom 5");
    EXPECT_EQ(host.appPath(), "");
    EXPECT_EQ(host.plugInPath(), "");
    EXPECT_EQ(host.scriptsPath(), "");
    EXPECT_EQ(host.panelsPath(), "");
    EXPECT_TRUE(host.hostIsSelected());
    host.setHostIsSelected(false);
    EXPECT_FALSE(host.hostIsSelected());
}

TEST(LightRoomHostModel, ThePresetIsExactlyTheTextThatLightroomReads) {
    FakePlatform fake;
    const std::string preset =
        LightRoomHostModel(fake.platform, "Lightroom 5").templateFileTextWithAppName("Filters.app");
    EXPECT_EQ(withoutIdentifier(preset),
              "s = {   id = \"ID\",\n"
              "  internalName = \"Filters 2\",\n"
              "  title = \"Filters 2\",\n"
              "  type = \"ExternalEditor\",\n"
              "  value = {\n"
              "  externalEditingFormat = \"TIFF_None_16_ProPhotoRGB\",\n"
              "  externalEditingFormat_dpi = 240,\n"
              "  externalEditorFullPath  = \"/Applications/Filters.app\",\n"
              "  },\n"
              "  version = 0,\n"
              "  }\n");
}

TEST(LightRoomHostModel, TwoPresetsDifferOnlyInTheirIdentifier) {
    FakePlatform fake;
    const LightRoomHostModel host(fake.platform, "Lightroom 5");
    const std::string first = host.templateFileTextWithAppName("Filters.app");
    const std::string second = host.templateFileTextWithAppName("Filters.app");
    EXPECT_NE(first, second);
    EXPECT_EQ(withoutIdentifier(first), withoutIdentifier(second));
}

TEST(LightRoomHostModel, NamesGoIntoThePresetAsTheyStand) {
    FakePlatform fake;
    fake.bundle.tables["installer"]["product_name"] = "\"Fil\\ters\" %@ \u5199\u771F";
    const std::string preset =
        LightRoomHostModel(fake.platform, "").templateFileTextWithAppName("A \"%@\" \\ b.app");
    EXPECT_NE(preset.find("  title = \"\"Fil\\ters\" %@ \u5199\u771F\",\n"), std::string::npos);
    EXPECT_NE(preset.find("  externalEditorFullPath  = \"/Applications/A \"%@\" \\ b.app\",\n"),
              std::string::npos);
}

TEST(LightRoomHostModel, AMissingProductNameIsEmptyInThePreset) {
    FakePlatform fake;
    fake.bundle.tables.clear();
    const std::string preset =
        LightRoomHostModel(fake.platform, "").templateFileTextWithAppName("Filters.app");
    EXPECT_NE(preset.find("  internalName = \"\",\n  title = \"\",\n"), std::string::npos);
}

TEST(LightRoomHostModel, ThePresetHoldsThePathThatTheTargetVolumesSystemKnows) {
    FakePlatform fake;
    fake.searchPaths.volume = "/Volumes/Other";
    const std::string preset =
        LightRoomHostModel(fake.platform, "").templateFileTextWithAppName("Filters.app");
    EXPECT_NE(preset.find("externalEditorFullPath  = \"/Applications/Filters.app\",\n"),
              std::string::npos);
}

}  // namespace

}  // namespace installer::test
