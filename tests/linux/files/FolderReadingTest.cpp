#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "linux/files/FolderReading.h"
#include "linux/files/LinuxFileManager.h"
#include "tests/privileged/trees/Disk.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The tree as sorted lines: the path, what the entry is, and the size of a file.
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

class FolderReadingTest : public testing::Test {
  protected:
    [[nodiscard]] std::string path(const std::string& name = "") const { return disk_.path(name); }

    std::vector<std::string> tree(const std::string& folder) {
        const auto entries = files_.readTree(folder, nullptr);
        if (!entries) return {entries.error().message()};
        std::vector<std::string> lines;
        describe(entries.value(), "", lines);
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    Disk disk_;
    RecordingLog log_;
    LinuxFileManager files_{log_, LinkPolicy::follow};
};

TEST_F(FolderReadingTest, ATreeHasHiddenEntriesAndWhatIsInPackages) {
    for (const char* folder : {"a", "a/.hidden", "a/Tool.app", "a/Tool.app/Contents", "a/empty"}) {
        disk_.makeFolder(folder);
    }
    disk_.makeFile("a/.hidden/x", "1");
    disk_.makeFile("a/Tool.app/Contents/x", "123");
    disk_.makeFile("a/file.app", "12345");
    disk_.makeFifo("a/fifo");
    EXPECT_THAT(tree(path("a")),
                ElementsAre(".hidden/", ".hidden/x 1", "Tool.app/ (package)", "Tool.app/Contents/",
                            "Tool.app/Contents/x 3", "empty/", "fifo?", "file.app 5"));
    EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(FolderReadingTest, ATreeFollowsALinkAtItsTopOnly) {
    disk_.makeFolder("a");
    disk_.makeFolder("b");
    disk_.makeFile("b/file", "12");
    disk_.makeLink(path("b"), "a/to folder");
    disk_.makeLink("nowhere", "a/dangling");
    disk_.makeLink("a", "link");
    for (const char* top : {"a", "a/", "link", "link/"}) {
        EXPECT_THAT(tree(path(top)), ElementsAre("dangling@", "to folder@")) << top;
    }
}

TEST_F(FolderReadingTest, NamesOfOneFileAreTold) {
    disk_.makeFolder("a");
    disk_.makeFolder("a/inner");
    disk_.makeFile("a/one", "12345");
    disk_.makeFile("a/alone", "12345");
    disk_.makeFile("a/other");
    ASSERT_EQ(link(path("a/one").c_str(), path("a/inner/same").c_str()), 0);
    ASSERT_EQ(link(path("a/other").c_str(), path("outside").c_str()), 0);
    const auto entries = files_.readTree(path("a"), nullptr);
    ASSERT_TRUE(entries);
    const auto named = [](const std::vector<TreeEntry>& from, const std::string& name) {
        return *std::find_if(from.begin(), from.end(),
                             [&](const TreeEntry& entry) { return entry.name == name; });
    };
    const auto one = named(entries.value(), "one").sharedFile;
    EXPECT_NE(one, 0U);
    EXPECT_EQ(named(named(entries.value(), "inner").entries, "same").sharedFile, one);
    EXPECT_NE(named(entries.value(), "other").sharedFile, one);
    EXPECT_EQ(named(entries.value(), "alone").sharedFile, 0U);
}

TEST_F(FolderReadingTest, AFolderThatCannotBeListedIsMarkedAndLogged) {
    disk_.makeFolder("a");
    disk_.makeFolder("a/closed", 0);
    disk_.makeFile("a/open", "1");
    EXPECT_EQ(asOrdinaryUser([this] {
                  std::string text;
                  for (const std::string& line : tree(path("a"))) text += line + "; ";
                  for (const std::string& line : log_.lines) text += line + "; ";
                  return text;
              }),
              "closed/ (unreadable); open 1; Could not list the folder " + path("a/closed") +
                  ": Permission denied; ");
    disk_.setMode("a/closed", 0755);
}

TEST_F(FolderReadingTest, AMissingTreeIsAnErrorAndAFileIsNoTree) {
    disk_.makeFile("file");
    EXPECT_EQ(files_.readTree(path("missing"), nullptr).error(),
              std::errc::no_such_file_or_directory);
    EXPECT_THAT(log_.lines, IsEmpty());
    EXPECT_EQ(files_.readTree(path("file"), nullptr).error(), std::errc::not_a_directory);
}

TEST_F(FolderReadingTest, TheSinkIsToldOfEachFolderWithoutBytes) {
    struct Sink : ProgressSink {
        void bytesCopied(std::uint64_t bytes) override { calls.push_back(bytes); }
        std::vector<std::uint64_t> calls;
    };
    disk_.makeFolder("a");
    disk_.makeFolder("a/b");
    disk_.makeFile("a/b/file", "123");
    Sink sink;
    EXPECT_TRUE(files_.readTree(path("a"), &sink));
    EXPECT_THAT(sink.calls, ElementsAre(0U, 0U));
}

TEST_F(FolderReadingTest, TheTreeInMemoryKeepsTheSamePromises) {
    MemoryFileManager memory;
    memory.addFile("/a/.hidden/x", "1");
    memory.addFile("/a/Tool.app/Contents/x", "123");
    memory.addLink("/a/link", "/a/.hidden");
    memory.addOther("/a/fifo");
    std::vector<std::string> lines;
    const auto entries = memory.readTree("/a", nullptr);
    ASSERT_TRUE(entries);
    describe(entries.value(), "", lines);
    // In the order in which they were made.
    EXPECT_THAT(lines,
                ElementsAre(".hidden/", ".hidden/x 1", "Tool.app/ (package)", "Tool.app/Contents/",
                            "Tool.app/Contents/x 3", "link@", "fifo?"));
    EXPECT_EQ(memory.readTree("/missing", nullptr).error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(memory.readTree("/a/Tool.app/Contents/x", nullptr).error(),
              std::errc::not_a_directory);
}

}  // namespace
}  // namespace installer::test
