// What a file manager promises of the operations that change nothing.

#include <functional>
#include <limits>

#include <gmock/gmock.h>

#include "tests/ports/FileManagerContract.h"

namespace installer::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

/// The entries of a tree as sorted lines: the path, what the entry is, and the size of a file.
void describe(const std::vector<TreeEntry>& entries, const std::string& folder,
              std::vector<std::string>& lines) {
    for (const TreeEntry& entry : entries) {
        std::string line = folder + entry.name;
        if (entry.type == FileType::regular) line += " " + std::to_string(entry.bytes);
        if (entry.type == FileType::symbolicLink) line += "@";
        if (entry.type == FileType::other) line += "?";
        if (entry.type == FileType::folder) line += "/";
        if (entry.isPackage) line += " (package)";
        if (entry.isUnreadable) line += " (unreadable)";
        lines.push_back(line);
        describe(entry.entries, folder + entry.name + "/", lines);
    }
}

std::vector<std::string> described(const Result<std::vector<TreeEntry>>& tree) {
    if (!tree) return {tree.error().message()};
    std::vector<std::string> lines;
    describe(tree.value(), "", lines);
    std::sort(lines.begin(), lines.end());
    return lines;
}

/// What a walk meets, in its order, without the text in front of the paths.
std::vector<std::string> walked(FileManager& files, const std::string& folder, WalkDepth depth,
                                const std::string& inFront) {
    std::vector<std::string> lines;
    files.walk(folder, depth, [&](const WalkEntry& entry) {
        EXPECT_TRUE(entry.path.starts_with(inFront)) << entry.path;
        std::string line = entry.path.substr(inFront.size());
        if (entry.type == FileType::folder) line += entry.isPackage ? " (package)" : "/";
        if (entry.type == FileType::symbolicLink) line += "@";
        if (entry.type == FileType::other) line += "?";
        lines.push_back(line);
    });
    return lines;
}

struct RecordingSink : ProgressSink {
    void bytesCopied(std::uint64_t bytes) override { calls.push_back(bytes); }
    std::vector<std::uint64_t> calls;
};

}  // namespace

TEST_P(FileManagerContractLooking, ExistsTellsOfEveryEntryAndFollowsNoLinkAtTheEnd) {
    scene_->makeFile("file");
    scene_->makeFolder("folder");
    scene_->makeFile("folder/inner");
    scene_->makeSpecial("special");
    scene_->makeLink("nowhere", "dangling");
    scene_->makeLink(path("folder"), "link");
    for (const char* name :
         {"file", "folder", "folder/", "special", "dangling", "dangling/", "link", "link/inner"}) {
        EXPECT_TRUE(files().exists(path(name))) << name;
    }
    EXPECT_TRUE(files().exists("/"));
    for (const char* name : {"missing", "file/inner", "dangling/inner", "link/other"}) {
        EXPECT_FALSE(files().exists(path(name))) << name;
    }
}

TEST_P(FileManagerContractLooking, RelativePathsAndThoseWithANulNameNothing) {
    scene_->makeFile("file", "text");
    for (const std::string& name : {std::string("file"), std::string(), std::string("./file"),
                                    path("file") + std::string("\0x", 2)}) {
        EXPECT_FALSE(files().exists(name));
        EXPECT_FALSE(files().isPackage(name));
        EXPECT_EQ(files().bytesToCopy(name), 0U);
        EXPECT_EQ(files().freeBytes(name), std::nullopt);
        EXPECT_EQ(files().attributes(name).error(), missing);
        EXPECT_EQ(files().list(name).error(), missing);
        EXPECT_EQ(files().readTree(name, nullptr).error(), missing);
        EXPECT_EQ(files().read(name, plenty).error(), missing);
        EXPECT_EQ(files().remove(name), missing);
        EXPECT_EQ(files().createFolders(name, 0755), missing);
        EXPECT_EQ(files().createFile(name, "new"), missing);
        EXPECT_EQ(files().setAttributes(name, {{}, {}, 0777}), missing);
        EXPECT_EQ(files().openForWriting(name).error(), missing);
        EXPECT_EQ(files().copy(name, path("copy"), nullptr), missing);
        EXPECT_EQ(files().copy(path("file"), name, nullptr), missing);
        EXPECT_THAT(walked(files(), name, WalkDepth::everything, ""), IsEmpty());
    }
    EXPECT_THAT(names(), ElementsAre("file"));
}

TEST_P(FileManagerContractLooking, FreeBytesAreThoseOfTheNearestFolderThatExists) {
    scene_->makeFile("file");
    const auto here = files().freeBytes(path());
    ASSERT_TRUE(here.has_value());
    EXPECT_GT(*here, 0U);
    for (const char* name : {"file", "missing", "missing/deeper/still"}) {
        EXPECT_TRUE(files().freeBytes(path(name)).has_value()) << name;
    }
}

TEST_P(FileManagerContractLooking, ListGivesHiddenNamesTooAndFollowsLinks) {
    scene_->makeFolder("folder");
    for (const char* name : {".hidden", "b", "a"}) {
        scene_->makeFile(std::string("folder/") + name);
    }
    scene_->makeLink("folder", "link");
    scene_->makeLink(path("link"), "far");
    for (const char* name : {"folder", "folder/", "link", "far"}) {
        EXPECT_THAT(names(name), ElementsAre(".hidden", "a", "b")) << name;
    }
    scene_->makeFolder("empty");
    EXPECT_THAT(names("empty"), IsEmpty());
}

TEST_P(FileManagerContractLooking, ListSaysWhyThereIsNoList) {
    scene_->makeFile("file");
    scene_->makeSpecial("special");
    scene_->makeLink("nowhere", "dangling");
    scene_->makeLink("circle", "circle");
    EXPECT_EQ(files().list(path("missing")).error(), missing);
    EXPECT_EQ(files().list(path("dangling")).error(), missing);
    EXPECT_EQ(files().list(path("file")).error(), std::errc::not_a_directory);
    EXPECT_EQ(files().list(path("special")).error(), std::errc::not_a_directory);
    EXPECT_EQ(files().list(path("circle")).error(), std::errc::too_many_symbolic_link_levels);
}

TEST_P(FileManagerContractLooking, AFolderThatCannotBeListedGivesNoMessage) {
    scene_->makeFolder("closed");
    scene_->makeFile("closed/file", "123");
    scene_->makeFile("file");
    scene_->makeUnlistable("closed");
    EXPECT_EQ(files().list(path("closed")).error(), std::errc::permission_denied);
    EXPECT_EQ(files().readTree(path("closed"), nullptr).error(), std::errc::permission_denied);
    for (const char* name : {"closed", "file", "missing"}) {
        EXPECT_FALSE(files().list(path(name))) << name;
        EXPECT_FALSE(files().readTree(path(name), nullptr)) << name;
        EXPECT_THAT(walked(files(), path(name), WalkDepth::everything, ""), IsEmpty()) << name;
    }
    EXPECT_THAT(walked(files(), path(), WalkDepth::everything, path() + "/"),
                UnorderedElementsAre("closed/", "file"));
    EXPECT_EQ(files().bytesToCopy(path("closed")), 0U);
    EXPECT_TRUE(files().exists(path("closed/file")));
    EXPECT_THAT(scene_->logged(), IsEmpty());
}

TEST_P(FileManagerContractLooking, AWalkLeavesHiddenEntriesOutAndEntersNeitherPackagesNorLinks) {
    for (const char* folder : {"a", "a/.hidden", "a/Tool.app", "a/b", "a/b/c"}) {
        scene_->makeFolder(folder);
    }
    for (const char* file : {"a/.secret", "a/.hidden/x", "a/Tool.app/x", "a/b/c/x", "a/y"}) {
        scene_->makeFile(file);
    }
    scene_->makeSpecial("a/special");
    scene_->makeLink("b", "a/link");
    EXPECT_THAT(walked(files(), path("a"), WalkDepth::everything, path("a") + "/"),
                UnorderedElementsAre("Tool.app (package)", "b/", "b/c/", "b/c/x", "y", "special?",
                                     "link@"));
    EXPECT_THAT(walked(files(), path("a"), WalkDepth::entries, path("a") + "/"),
                UnorderedElementsAre("Tool.app (package)", "b/", "y", "special?", "link@"));
}

TEST_P(FileManagerContractLooking, AWalkMeetsAFolderBeforeWhatIsInIt) {
    for (const char* folder : {"a", "a/b", "a/b/c"}) scene_->makeFolder(folder);
    scene_->makeFile("a/b/c/x");
    EXPECT_THAT(walked(files(), path("a"), WalkDepth::everything, path("a") + "/"),
                ElementsAre("b/", "b/c/", "b/c/x"));
}

TEST_P(FileManagerContractLooking, AWalkFollowsALinkAtItsTopAndKeepsTheLinksName) {
    scene_->makeFolder("folder");
    scene_->makeFolder("folder/inner");
    scene_->makeFile("folder/inner/file");
    scene_->makeLink("folder", "link");
    EXPECT_THAT(walked(files(), path("link"), WalkDepth::everything, path("link") + "/"),
                ElementsAre("inner/", "inner/file"));
    EXPECT_THAT(walked(files(), path("link/inner"), WalkDepth::everything, path("link") + "/"),
                ElementsAre("inner/file"));
}

TEST_P(FileManagerContractLooking, AWalkOfAPackageOrAHiddenFolderEntersIt) {
    for (const char* folder : {"Tool.app", ".hidden"}) {
        scene_->makeFolder(folder);
        scene_->makeFile(std::string(folder) + "/file");
        EXPECT_THAT(walked(files(), path(folder), WalkDepth::everything, path(folder) + "/"),
                    ElementsAre("file"));
    }
}

TEST_P(FileManagerContractLooking, AWalkBearsThatTheVisitorChangesTheTree) {
    scene_->makeFolder("a");
    for (const char* name : {"a/x", "a/y"}) {
        scene_->makeFolder(name);
        scene_->makeFile(std::string(name) + "/file");
    }
    int visits = 0;
    files().walk(path("a"), WalkDepth::everything, [&](const WalkEntry&) {
        ++visits;
        for (const char* name : {"a/x", "a/y"}) static_cast<void>(files().remove(path(name)));
        scene_->makeFile("a/new" + std::to_string(visits));
    });
    EXPECT_EQ(visits, 2);
}

TEST_P(FileManagerContractLooking, ATreeHasHiddenEntriesAndWhatIsInPackages) {
    for (const char* folder : {"a", "a/.hidden", "a/Tool.app", "a/Tool.app/Contents", "a/empty"}) {
        scene_->makeFolder(folder);
    }
    scene_->makeFile("a/.hidden/x", "1");
    scene_->makeFile("a/Tool.app/Contents/x", "123");
    scene_->makeFile("a/file.app", "12345");
    scene_->makeSpecial("a/special");
    scene_->makeLink("empty", "a/link");
    scene_->makeLink("a", "top");
    for (const char* top : {"a", "a/", "top"}) {
        EXPECT_THAT(
            described(files().readTree(path(top), nullptr)),
            ElementsAre(".hidden/", ".hidden/x 1", "Tool.app/ (package)", "Tool.app/Contents/",
                        "Tool.app/Contents/x 3", "empty/", "file.app 5", "link@", "special?"))
            << top;
    }
}

TEST_P(FileManagerContractLooking, ATreeTellsWhichNamesAreOneFile) {
    scene_->makeFolder("a");
    scene_->makeFile("a/one", "123");
    scene_->makeHardLink("a/one", "a/other");
    scene_->makeFile("a/alone", "123");
    scene_->makeFile("outside", "123");
    scene_->makeHardLink("outside", "a/inside");
    auto tree = entries("a");
    EXPECT_EQ(tree["one"].sharedFile, tree["other"].sharedFile);
    EXPECT_NE(tree["one"].sharedFile, 0U);
    EXPECT_EQ(tree["alone"].sharedFile, 0U);
    EXPECT_NE(tree["inside"].sharedFile, 0U);
    EXPECT_NE(tree["inside"].sharedFile, tree["one"].sharedFile);
    ASSERT_FALSE(files().remove(path("a/one")));
    EXPECT_EQ(entries("a")["other"].sharedFile, 0U);
}

TEST_P(FileManagerContractLooking, AFileWithSeveralNamesIsMeasuredOnce) {
    scene_->makeFolder("a");
    scene_->makeFile("a/one", "123");
    scene_->makeHardLink("a/one", "a/other");
    scene_->makeFile("a/alone", "12345");
    EXPECT_EQ(files().bytesToCopy(path("a")), 8U);
    EXPECT_EQ(files().bytesToCopy(path("a/other")), 3U);
}

TEST_P(FileManagerContractLooking, ATreeMarksWhatCannotBeListedAndReadsTheRest) {
    for (const char* folder : {"a", "a/closed", "a/open"}) scene_->makeFolder(folder);
    scene_->makeFile("a/closed/file");
    scene_->makeFile("a/open/file", "1");
    scene_->makeUnlistable("a/closed");
    EXPECT_THAT(described(files().readTree(path("a"), nullptr)),
                ElementsAre("closed/ (unreadable)", "open/", "open/file 1"));
}

TEST_P(FileManagerContractLooking, ATreeThatCannotBeReadIsAnErrorThatSaysWhy) {
    scene_->makeFile("file");
    EXPECT_EQ(files().readTree(path("missing"), nullptr).error(), missing);
    EXPECT_EQ(files().readTree(path("file"), nullptr).error(), std::errc::not_a_directory);
}

TEST_P(FileManagerContractLooking, ReadingATreeTellsTheSinkThatItGoesOnWithoutBytes) {
    scene_->makeFolder("a");
    scene_->makeFile("a/file", "123");
    RecordingSink sink;
    EXPECT_TRUE(files().readTree(path("a"), &sink));
    EXPECT_THAT(sink.calls, testing::AllOf(testing::Not(IsEmpty()), testing::Each(0U)));
}

TEST_P(FileManagerContractLooking, APackageIsAFolderWithASuffixOfTheList) {
    for (const char* folder : {"Tool.app", "Tool.application", "Tool.prefPane", ".app"}) {
        scene_->makeFolder(folder);
    }
    scene_->makeFile("file.app");
    scene_->makeLink("Tool.app", "link.app");
    for (const char* name : {"Tool.app", "Tool.app/", "Tool.prefPane"}) {
        EXPECT_TRUE(files().isPackage(path(name))) << name;
    }
    for (const char* name : {"Tool.application", ".app", "file.app", "link.app", "missing.app"}) {
        EXPECT_FALSE(files().isPackage(path(name))) << name;
    }
}

TEST_P(FileManagerContractLooking, AttributesAreTheEntrysOwn) {
    const FileTime date(std::chrono::nanoseconds(1'000'000'000'123'456'789));
    scene_->makeFile("file", "x");
    scene_->setPermissions("file", 04751);
    scene_->setModificationDate("file", date);
    scene_->makeFolder("folder");
    scene_->setPermissions("folder", 01777);
    scene_->makeSpecial("special");
    scene_->makeLink("file", "link");
    const auto file = files().attributes(path("file"));
    ASSERT_TRUE(file);
    EXPECT_EQ(file.value().type, FileType::regular);
    EXPECT_EQ(file.value().permissions, 04751U);
    EXPECT_EQ(file.value().modificationDate, date);
    EXPECT_EQ(files().attributes(path("folder")).value().type, FileType::folder);
    EXPECT_EQ(files().attributes(path("folder")).value().permissions, 01777U);
    EXPECT_EQ(files().attributes(path("link")).value().type, FileType::symbolicLink);
    EXPECT_EQ(files().attributes(path("special")).value().type, FileType::other);
    EXPECT_EQ(files().attributes(path("missing")).error(), missing);
    EXPECT_EQ(files().attributes(path("file/inner")).error(), std::errc::not_a_directory);
}

TEST_P(FileManagerContractLooking, ReadGivesAtMostTheLimitAndFollowsLinks) {
    const std::string text = std::string("a\0b", 3) + std::string(200'000, 'x');
    scene_->makeFile("file", text);
    scene_->makeFile("empty");
    scene_->makeLink("file", "link");
    EXPECT_EQ(files().read(path("file"), 2).value(), text.substr(0, 2));
    EXPECT_EQ(files().read(path("file"), 0).value(), "");
    EXPECT_EQ(files().read(path("empty"), plenty).value(), "");
    EXPECT_TRUE(files().read(path("link"), plenty).value() == text);
    EXPECT_TRUE(files().read(path("file"), text.size()).value() == text);
    EXPECT_TRUE(files().read(path("file"), std::numeric_limits<std::size_t>::max()).value() ==
                text);
}

TEST_P(FileManagerContractLooking, ReadOpensRegularFilesOnly) {
    scene_->makeFolder("folder");
    scene_->makeSpecial("special");
    scene_->makeLink("special", "link");
    scene_->makeLink("nowhere", "dangling");
    EXPECT_EQ(files().read(path("folder"), plenty).error(), std::errc::is_a_directory);
    EXPECT_EQ(files().read(path("special"), plenty).error(), std::errc::invalid_argument);
    EXPECT_EQ(files().read(path("link"), plenty).error(), std::errc::invalid_argument);
    EXPECT_EQ(files().read(path("dangling"), plenty).error(), missing);
    EXPECT_EQ(files().read(path("missing"), plenty).error(), missing);
}

}  // namespace installer::test
