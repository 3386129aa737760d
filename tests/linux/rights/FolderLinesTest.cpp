#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/text/Text.h"
#include "linux/rights/FolderLines.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(FolderLines, ShowEachFolderBelowTheHeading) {
    EXPECT_THAT(folderLines({"/Library/Acme", "/a b"}, {.heading = "Only:", .more = ""}),
                ElementsAre("Only:", "  /Library/Acme", "  /a b"));
    EXPECT_THAT(folderLines({}, {}), IsEmpty());
}

TEST(FolderLines, SayHowManyOfManyAreNotShown) {
    std::vector<std::string> folders;
    for (int index = 0; index < 12; ++index) folders.push_back("/" + std::to_string(index));
    EXPECT_EQ(folderLines(folders, {}).size(), 13U);
    EXPECT_EQ(folderLines(folders, {}).back(), "  /11");
    folders.resize(1000, "/more");
    const auto lines = folderLines(folders, {.heading = "", .more = "%@ others"});
    EXPECT_EQ(lines.size(), 14U);
    EXPECT_EQ(lines.back(), "  988 others");
}

TEST(FolderLines, KeepBothEndsOfALongPath) {
    std::string path = "/Library/";
    for (int index = 0; index < 200; ++index) path += "\u00e4\u6f22";
    path += "/Plug-Ins";
    const std::string line = folderLines({path}, {}).at(1);
    EXPECT_LT(line.size(), 180U);
    EXPECT_TRUE(line.starts_with("  /Library/\u00e4\u6f22"));
    EXPECT_TRUE(line.ends_with("\u6f22/Plug-Ins"));
    EXPECT_TRUE(isUtf8(line));
    EXPECT_THAT(line, testing::Not(testing::HasSubstr("\\x"))) << "no character is cut in two";
}

TEST(FolderLines, HoldNoCharacterThatATerminalObeys) {
    EXPECT_THAT(folderLines({"/a\nforged\x1b[2J\xC2\x9B"}, {.heading = "one\ntwo", .more = ""}),
                ElementsAre("one\\ntwo", "  /a\\nforged\\x1b[2J\\xc2\\x9b"));
}

}  // namespace
}  // namespace installer::test
