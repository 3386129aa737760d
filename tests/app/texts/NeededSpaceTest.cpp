#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/texts/NeededSpace.h"
#include "ports/window/InterfaceOwner.h"
#include "tests/app/Wizard.h"

namespace installer::test {
namespace {

const std::string files = "/Installer.app/Contents/Resources/files";

class NeededSpaceTest : public WizardTest {
  protected:
    NeededSpaceTest() {
        fake.bundle.tables["Localizable"]["space_fmt"] = "Needs %1$@ of %2$@";
        fake.bundle.tables["Localizable"]["space_short_fmt"] = "%1$@ is more than %2$@";
        addPhotoshop("Adobe Photoshop CC");
        addPhotoshop("Adobe Photoshop CS6");
        fake.memory.addFile(files + "/HD/Applications/Tool.app/x", std::string(4000, 'x'));
        fake.memory.addFile(files + "/PHOTOSHOP_PLUGINS/F.plugin/x", std::string(20000, 'x'));
        fake.memory.freeBytesBelow = {{"/", 7'000'000}};
    }

    std::string note() { return textOf("spaceNote"); }
    void tick(std::size_t row, bool ticked) { wizard->setRowChecked("foundHosts", row, ticked); }
};

TEST_F(NeededSpaceTest, TheNoteCountsWhatGoesIntoEachSelectedHost) {
    start();
    goTo(1);
    EXPECT_EQ(note(), "Needs 44 kB of 7 MB");
    tick(0, false);
    EXPECT_EQ(note(), "Needs 24 kB of 7 MB");
    tick(1, false);
    EXPECT_EQ(note(), "Needs 4 kB of 7 MB");
}

TEST_F(NeededSpaceTest, TheNoteIsReadAgainWhenARowIsTicked) {
    start();
    goTo(1);
    recordRefreshes();
    tick(0, false);
    EXPECT_THAT(refreshed, testing::Contains("spaceNote"));
}

TEST_F(NeededSpaceTest, TheFullestOfTheDisksCounts) {
    fake.memory.freeBytesBelow["/Applications/Adobe Photoshop CS6"] = 1'000'000;
    start();
    goTo(1);
    EXPECT_EQ(note(), "Needs 44 kB of 1 MB");
}

TEST_F(NeededSpaceTest, TheNoteSaysWhenThereIsTooLittle) {
    fake.memory.freeBytesBelow = {{"/", 30'000}};
    start();
    goTo(1);
    EXPECT_EQ(note(), "44 kB is more than 30 kB");
    tick(0, false);
    EXPECT_EQ(note(), "Needs 24 kB of 30 kB");
}

TEST_F(NeededSpaceTest, NothingIsSaidOfADiskThatNobodyKnows) {
    fake.memory.freeBytesBelow.clear();
    start();
    goTo(1);
    EXPECT_EQ(note(), "");
}

TEST_F(NeededSpaceTest, ThePayloadIsReadOnTheHostsPageAndOnlyOnce) {
    start();
    const auto reads = [&] {
        return std::ranges::count_if(fake.files.looks, [](const std::string& look) {
            return look == "readTree " + files + "/HD";
        });
    };
    EXPECT_EQ(note(), "");
    EXPECT_EQ(reads(), 0);
    goTo(1);
    static_cast<void>(note());
    tick(0, false);
    tick(0, true);
    static_cast<void>(note());
    EXPECT_EQ(reads(), 1);
}

}  // namespace
}  // namespace installer::test
