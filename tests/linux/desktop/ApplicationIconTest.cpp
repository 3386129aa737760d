#include <string>

#include <gtest/gtest.h>

#include "linux/bundle/LinuxBundle.h"
#include "linux/desktop/ApplicationIcon.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

class ApplicationIconTest : public testing::Test {
  protected:
    std::string addResource(const std::string& package, const std::string& name) const {
        return disk_.add(package + "/Contents/Resources/" + name, "picture");
    }
    /// Makes the package's property list name that file.
    void nameIcon(const std::string& package, const std::string& name) const {
        disk_.add(package + "/Contents/Info.plist",
                  "<plist version=\"1.0\"><dict><key>CFBundleIconFile</key><string>" + name +
                      "</string></dict></plist>");
    }
    std::string iconOf(const std::string& below) {
        return applicationIcon(disk_.at(below), bundles_).path;
    }

    ScratchFolder disk_;
    RecordingLog log_;
    LinuxBundles bundles_{{}, log_};
};

TEST_F(ApplicationIconTest, IsTheFileThatThePackageNames) {
    nameIcon("A.app", "camera.png");
    addResource("A.app", "AppIcon.png");
    const std::string icon = addResource("A.app", "camera.png");
    EXPECT_EQ(iconOf("A.app"), icon);
}

TEST_F(ApplicationIconTest, TheSuffixMayBeLeftAway) {
    for (const std::string type : {"icns", "tiff", "svg", "png"}) {
        nameIcon("A.app", "camera");
        const std::string icon = addResource("A.app", "camera." + type);
        EXPECT_EQ(iconOf("A.app"), icon);
    }
}

TEST_F(ApplicationIconTest, TheUsualIconStandsInForAMissingOne) {
    const std::string icon = addResource("A.app", "AppIcon.png");
    EXPECT_EQ(iconOf("A.app"), icon);
    nameIcon("A.app", "missing");
    EXPECT_EQ(iconOf("A.app"), icon);
    nameIcon("A.app", "");
    EXPECT_EQ(iconOf("A.app"), icon);
    const std::string vector = addResource("B.app", "AppIcon.svg");
    EXPECT_EQ(iconOf("B.app"), vector);
}

TEST_F(ApplicationIconTest, ANameCannotLeadOutOfTheResources) {
    disk_.add("secret.png", "picture");
    nameIcon("A.app", "../../../secret.png");
    addResource("A.app", "other.png");
    EXPECT_EQ(iconOf("A.app"), "");
}

TEST_F(ApplicationIconTest, ANameThatIsNoPlainFileNameCountsAsMissing) {
    const std::string usual = addResource("A.app", "AppIcon.png");
    addResource("A.app", "folder/camera.png");
    for (const char* name : {".", "..", "folder/camera.png", "../Resources/AppIcon.png"}) {
        nameIcon("A.app", name);
        EXPECT_EQ(iconOf("A.app"), usual) << name;
    }
}

TEST_F(ApplicationIconTest, AFolderIsNoPicture) {
    nameIcon("A.app", "camera");
    disk_.addFolder("A.app/Contents/Resources/camera.png");
    EXPECT_EQ(iconOf("A.app"), "");
}

TEST_F(ApplicationIconTest, AnApplicationsFolderHasTheIconOfTheApplicationInIt) {
    const std::string icon = addResource("Photoshop/Photoshop.app", "AppIcon.png");
    addResource("Photoshop/Scripts.plugin", "AppIcon.png");
    addResource("Photoshop/.hidden.app", "AppIcon.png");
    disk_.add("Photoshop/a file.app", "");
    EXPECT_EQ(iconOf("Photoshop"), icon);
    EXPECT_EQ(iconOf("Photoshop/"), icon);
}

TEST_F(ApplicationIconTest, AnApplicationDeeperInAFolderIsNotItsOwn) {
    addResource("Photoshop/Tools/Tool.app", "AppIcon.png");
    EXPECT_EQ(iconOf("Photoshop"), "");
}

TEST_F(ApplicationIconTest, WhatHasNoIconHasNoPicture) {
    disk_.addFolder("Empty.app");
    disk_.addFolder("empty");
    disk_.add("file.txt", "");
    disk_.add("file.app", "");
    for (const char* below : {"Empty.app", "empty", "file.txt", "file.app", "missing"}) {
        EXPECT_EQ(iconOf(below), "") << below;
    }
    EXPECT_EQ(applicationIcon("", bundles_), Image());
    EXPECT_EQ(applicationIcon(disk_.at("empty") + std::string("\0x", 2), bundles_), Image());
}

}  // namespace
}  // namespace installer::test
