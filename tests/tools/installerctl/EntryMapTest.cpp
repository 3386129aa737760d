#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/installerctl/records/EntryMap.h"

namespace installer::test {
namespace {

using testing::ElementsAre;

EntryRecord fileRecord(const std::string& path, const std::string& contents) {
    return {.path = path,
            .kind = EntryKind::file,
            .mode = 0775,
            .size = contents.size(),
            .contents = contents};
}

EntryRecord folderRecord(const std::string& path) {
    return {.path = path, .kind = EntryKind::folder, .mode = 0775, .size = 0, .contents = {}};
}

std::vector<std::string> pathsOf(const EntryMap& map, const std::string& top) {
    std::vector<std::string> paths;
    for (const auto* alternatives : map.tree(top)) paths.push_back(alternatives->front().path);
    return paths;
}

TEST(EntryMap, ATreeIsPutAtItsPlaceWithTheNewPaths) {
    EntryMap map;
    const std::vector<EntryRecord> tree = {folderRecord("/payload/a"),
                                           fileRecord("/payload/a/b", "b")};
    map.replaceTree("/disk/x", tree);
    EXPECT_THAT(pathsOf(map, "/disk/x"), ElementsAre("/disk/x", "/disk/x/b"));
}

TEST(EntryMap, ALaterTreeReplacesEverythingBelowItsPlaceAndNothingElse) {
    EntryMap map;
    map.add(fileRecord("/a", "1"));
    map.add(fileRecord("/a/b", "2"));
    map.add(fileRecord("/a b", "3"));
    map.add(fileRecord("/a0", "4"));
    const std::vector<EntryRecord> tree = {folderRecord("/s")};
    map.replaceTree("/a", tree);
    EXPECT_THAT(pathsOf(map, "/a"), ElementsAre("/a"));
    EXPECT_NE(map.at("/a b"), nullptr);
    EXPECT_NE(map.at("/a0"), nullptr);
}

TEST(EntryMap, EachOfSeveralRecordsOfAPathIsKnown) {
    EntryMap map;
    map.add(fileRecord("/a", "old"));
    map.add(fileRecord("/a", "new"));
    EXPECT_TRUE(map.knows(fileRecord("/a", "old")));
    EXPECT_TRUE(map.knows(fileRecord("/a", "new")));
    EXPECT_FALSE(map.knows(fileRecord("/a", "other")));
    EXPECT_FALSE(map.knows(fileRecord("/b", "old")));
}

TEST(EntryMap, APathInARecordedFolderIsCovered) {
    EntryMap map;
    map.add(folderRecord("/a/b"));
    EXPECT_TRUE(map.covers("/a/b/c/d"));
    EXPECT_TRUE(map.covers("/a/b"));
    EXPECT_FALSE(map.covers("/a/bc"));
}

TEST(EntryMapSameEntry, AnUnreadableFileIsLikeNoOther) {
    EXPECT_FALSE(isSameEntry(fileRecord("/a", ""), fileRecord("/a", "")));
}

TEST(EntryMapSameEntry, AnyModeIsGoodEnoughWhereNoneIsRecorded) {
    EntryRecord anyMode = fileRecord("/a", "x");
    anyMode.mode.reset();
    EntryRecord otherMode = fileRecord("/a", "x");
    otherMode.mode = 0600;
    EXPECT_TRUE(isSameEntry(anyMode, otherMode));
    EXPECT_FALSE(isSameEntry(fileRecord("/a", "x"), otherMode));
}

}  // namespace
}  // namespace installer::test
