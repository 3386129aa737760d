#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "linux/desktop/MenuIcon.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

class MenuIconTest : public testing::Test {
  protected:
    void addEntry(const std::string& data, const std::string& name, const std::string& lines) {
        disk_.add(data + "/applications/" + name, "[Desktop Entry]\nType=Application\n" + lines);
    }
    std::string iconOf(const std::string& program) {
        return menuIcon(program,
                        [this](const std::string& name) -> std::optional<std::string> {
                            if (name == "XDG_DATA_HOME") return disk_.at("own");
                            if (name == "XDG_DATA_DIRS") return "relative:" + disk_.at("shared");
                            return std::nullopt;
                        })
            .path;
    }

    ScratchFolder disk_;
};

TEST_F(MenuIconTest, IsThatOfTheEntryThatStartsTheProgram) {
    const std::string icon = disk_.add("camera.png", "picture");
    addEntry("shared", "other.desktop", "Exec=/opt/other %U\nIcon=" + disk_.at("other.png") + "\n");
    addEntry("shared", "photo.desktop", "Exec=\"/opt/my photos/run\" --new %U\nIcon=" + icon);
    EXPECT_EQ(iconOf("/opt/my photos/run"), icon);
    EXPECT_EQ(iconOf("/elsewhere/run"), "");
}

TEST_F(MenuIconTest, AProgramInPathGoesByItsName) {
    const std::string icon = disk_.add("shared/icons/hicolor/64x64/apps/photo.png", "picture");
    addEntry("shared", "photo.desktop", "Icon=photo\nExec=photo %U\n");
    EXPECT_EQ(iconOf("/usr/bin/photo"), icon);
    EXPECT_EQ(iconOf("/usr/bin/photos"), "");
}

TEST_F(MenuIconTest, TheLargestPictureOfTheThemeIsTaken) {
    addEntry("own", "photo.desktop", "Exec=photo\nIcon=photo\n");
    disk_.add("own/icons/hicolor/32x32/apps/photo.png", "small");
    disk_.add("own/pixmaps/photo.xpm", "old");
    const std::string icon = disk_.add("own/icons/hicolor/128x128/apps/photo.svg", "large");
    EXPECT_EQ(iconOf("/usr/bin/photo"), icon);
}

TEST_F(MenuIconTest, TheUsersEntryComesBeforeTheMachines) {
    const std::string icon = disk_.add("own.png", "picture");
    addEntry("own", "photo.desktop", "Exec=photo\nIcon=" + icon + "\n");
    addEntry("shared", "photo.desktop", "Exec=photo\nIcon=" + disk_.add("shared.png", "") + "\n");
    EXPECT_EQ(iconOf("/usr/bin/photo"), icon);
}

TEST_F(MenuIconTest, OtherGroupsAndBrokenEntriesSayNothing) {
    addEntry("own", "a.desktop",
             "[Desktop Action New]\nExec=photo\nIcon=" + disk_.add("a.png", ""));
    addEntry("own", "b.desktop", "Exec=photo\nIcon=../../etc/passwd\n");
    disk_.add("own/applications/c.desktop", std::string("\0\xff[Desktop", 10));
    disk_.addFolder("own/applications/d.desktop");
    EXPECT_EQ(iconOf("/usr/bin/photo"), "");
}

}  // namespace
}  // namespace installer::test
