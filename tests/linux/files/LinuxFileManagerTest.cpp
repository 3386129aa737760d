#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "linux/files/LinuxFileManager.h"
#include "privileged/system/AdminGroup.h"
#include "tests/privileged/trees/Disk.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

constexpr std::size_t plenty = 1 << 20;

class LinuxFileManagerTest : public testing::Test {
  protected:
    [[nodiscard]] std::string path(const std::string& name = "") const { return disk_.path(name); }

    std::vector<std::string> walked(const std::string& folder, WalkDepth depth) {
        std::vector<std::string> names;
        files_.walk(folder, depth, [&](const WalkEntry& entry) {
            const std::string prefix = path() + "/";
            EXPECT_TRUE(entry.path.starts_with(prefix)) << entry.path;
            std::string name = entry.path.substr(prefix.size());
            if (entry.type == FileType::folder) name += entry.isPackage ? " (package)" : "/";
            if (entry.type == FileType::symbolicLink) name += "@";
            if (entry.type == FileType::other) name += "?";
            names.push_back(name);
        });
        return names;
    }

    static std::vector<std::string> sorted(std::vector<std::string> names) {
        std::sort(names.begin(), names.end());
        return names;
    }

    Disk disk_;
    test::RecordingLog log_;
    LinuxFileManager files_{log_, LinkPolicy::follow};
};

TEST_F(LinuxFileManagerTest, TrustsOnlyRootsLinksWhenItActsAsRoot) {
    const auto policy = geteuid() == 0 ? LinkPolicy::trustedOnly : LinkPolicy::follow;
    EXPECT_EQ(LinuxFileManager::linkPolicyOfThisProcess(), policy);
    EXPECT_EQ(asOrdinaryUser([] {
                  return LinuxFileManager::linkPolicyOfThisProcess() == LinkPolicy::follow
                             ? "follow"
                             : "trusted only";
              }),
              "follow");
}

TEST_F(LinuxFileManagerTest, ChangesAreRefusedThroughAnUntrustedLinkAndQuestionsAreNot) {
    LinuxFileManager asRoot(log_, LinkPolicy::trustedOnly);
    disk_.makeFolder("folder");
    disk_.makeFile("folder/file", "text");
    disk_.makeLink("folder", "link");
    const auto refused = std::errc::too_many_symbolic_link_levels;
    EXPECT_EQ(asRoot.copy(path("link/file"), path("copy"), nullptr), refused);
    EXPECT_EQ(asRoot.copy(path("folder/file"), path("link/copy"), nullptr), refused);
    EXPECT_EQ(asRoot.remove(path("link/file")), refused);
    EXPECT_EQ(asRoot.createFolders(path("link/new"), 0755), refused);
    EXPECT_EQ(asRoot.createFile(path("link/new"), "x"), refused);
    EXPECT_EQ(asRoot.setAttributes(path("link/file"), {{}, {}, 0777}), refused);
    EXPECT_EQ(asRoot.openForWriting(path("link/file")).error(), refused);
    EXPECT_TRUE(asRoot.exists(path("link/file")));
    EXPECT_TRUE(asRoot.attributes(path("link/file")));
    EXPECT_EQ(asRoot.read(path("link/file"), plenty).value(), "text");
    EXPECT_EQ(asRoot.list(path("link")).value(), std::vector<std::string>{"file"});
    EXPECT_EQ(disk_.names("folder"), std::vector<std::string>{"file"});
}

TEST_F(LinuxFileManagerTest, ExistsTellsOfEveryEntryAndFollowsNoLink) {
    disk_.makeFile("file");
    disk_.makeFolder("folder");
    disk_.makeLink("nowhere", "dangling");
    disk_.makeFifo("fifo");
    for (const char* name : {"file", "folder", "folder/", "dangling", "dangling/", "fifo"}) {
        EXPECT_TRUE(files_.exists(path(name))) << name;
    }
    EXPECT_TRUE(files_.exists("/"));
    EXPECT_FALSE(files_.exists(path("missing")));
    EXPECT_FALSE(files_.exists(path("file/inside")));
}

TEST_F(LinuxFileManagerTest, RelativePathsAndThoseWithANulNameNothing) {
    disk_.makeFile("file", "text");
    ASSERT_EQ(chdir(path().c_str()), 0);
    for (const std::string& name : {std::string("file"), std::string(), std::string("./file"),
                                    path("file") + std::string("\0x", 2)}) {
        const auto missing = std::errc::no_such_file_or_directory;
        EXPECT_FALSE(files_.exists(name));
        EXPECT_FALSE(files_.isPackage(name));
        EXPECT_EQ(files_.attributes(name).error(), missing);
        EXPECT_EQ(files_.list(name).error(), missing);
        EXPECT_EQ(files_.readTree(name, nullptr).error(), missing);
        EXPECT_EQ(files_.read(name, plenty).error(), missing);
        EXPECT_EQ(files_.remove(name), missing);
        EXPECT_EQ(files_.createFolders(name, 0755), missing);
        EXPECT_EQ(files_.createFile(name, "new"), missing);
        EXPECT_EQ(files_.setAttributes(name, {{}, {}, 0777}), missing);
        EXPECT_EQ(files_.openForWriting(name).error(), missing);
        EXPECT_EQ(files_.copy(name, path("copy"), nullptr), missing);
        EXPECT_EQ(files_.copy(path("file"), name, nullptr), missing);
        EXPECT_TRUE(walked(name, WalkDepth::everything).empty());
    }
    EXPECT_EQ(chdir("/"), 0);
    EXPECT_EQ(disk_.names(), std::vector<std::string>{"file"});
}

TEST_F(LinuxFileManagerTest, ListGivesHiddenNamesTooAndFollowsALink) {
    disk_.makeFolder("folder");
    for (const char* name : {".hidden", "b", "a"}) disk_.makeFile(std::string("folder/") + name);
    disk_.makeLink("folder", "link");
    for (const char* name : {"folder", "folder/", "link"}) {
        const auto names = files_.list(path(name));
        ASSERT_TRUE(names);
        EXPECT_EQ(sorted(names.value()), (std::vector<std::string>{".hidden", "a", "b"}));
    }
}

TEST_F(LinuxFileManagerTest, ListSaysWhyThereIsNoList) {
    disk_.makeFile("file");
    disk_.makeFifo("fifo");
    EXPECT_EQ(files_.list(path("missing")).error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(files_.list(path("file")).error(), std::errc::not_a_directory);
    EXPECT_EQ(files_.list(path("fifo")).error(), std::errc::not_a_directory);
    EXPECT_EQ(asOrdinaryUser([&] {
                  disk_.makeFolder("locked", 0000);
                  return files_.list(path("locked")).error().message();
              }),
              "Permission denied");
}

TEST_F(LinuxFileManagerTest, WalkEntersFoldersButNeitherPackagesNorLinksNorHiddenOnes) {
    for (const char* name : {"a", "a/deep", "a/Tool.app", "a/.hidden", "other"}) {
        disk_.makeFolder(name);
    }
    disk_.makeFile("a/deep/file");
    disk_.makeFile("a/Tool.app/inside");
    disk_.makeFile("a/.hidden/inside");
    disk_.makeFile("a/file.app");
    disk_.makeFile("other/inside");
    disk_.makeLink("../other", "a/link");
    disk_.makeLink("../other", "a/link.app");
    disk_.makeFifo("a/fifo");
    EXPECT_EQ(sorted(walked(path("a"), WalkDepth::everything)),
              (std::vector<std::string>{"a/Tool.app (package)", "a/deep/", "a/deep/file", "a/fifo?",
                                        "a/file.app", "a/link.app@", "a/link@"}));
    EXPECT_EQ(sorted(walked(path("a"), WalkDepth::entries)),
              (std::vector<std::string>{"a/Tool.app (package)", "a/deep/", "a/fifo?", "a/file.app",
                                        "a/link.app@", "a/link@"}));
}

TEST_F(LinuxFileManagerTest, WalkTellsAFolderBeforeItsContentsInListingOrder) {
    disk_.makeFolder("a");
    for (const char* name : {"a/x", "a/y", "a/z", "a/x/1", "a/y/2"}) disk_.makeFolder(name);
    const auto list = files_.list(path("a")).value();
    std::vector<std::string> expected;
    const std::map<std::string, std::string> inner = {{"x", "1"}, {"y", "2"}};
    for (const auto& name : list) {
        expected.push_back("a/" + name + "/");
        if (inner.contains(name)) expected.push_back("a/" + name + "/" + inner.at(name) + "/");
    }
    EXPECT_EQ(walked(path("a"), WalkDepth::everything), expected);
}

TEST_F(LinuxFileManagerTest, WalkFollowsALinkForItsOwnFolderAndAddsNoSeparators) {
    disk_.makeFolder("a");
    disk_.makeFile("a/file");
    disk_.makeLink("a", "link");
    EXPECT_EQ(walked(path("link"), WalkDepth::everything), std::vector<std::string>{"link/file"});
    EXPECT_EQ(walked(path("a//"), WalkDepth::everything), std::vector<std::string>{"a/file"});
    EXPECT_TRUE(walked(path("a/file"), WalkDepth::everything).empty());
    EXPECT_TRUE(walked(path("missing"), WalkDepth::everything).empty());
}

// Of the walked folder itself only the contents count, whatever its name.
TEST_F(LinuxFileManagerTest, WalkOfAPackageOrAHiddenFolderEntersIt) {
    disk_.makeFolder("Tool.app");
    disk_.makeFile("Tool.app/file");
    EXPECT_EQ(walked(path("Tool.app"), WalkDepth::everything),
              std::vector<std::string>{"Tool.app/file"});
}

TEST_F(LinuxFileManagerTest, WalkPassesOverWhatCannotBeRead) {
    EXPECT_EQ(asOrdinaryUser([&] {
                  disk_.makeFolder("a");
                  disk_.makeFolder("a/locked");
                  disk_.makeFile("a/locked/file");
                  disk_.makeFile("a/file");
                  disk_.setMode("a/locked", 0000);
                  const auto names = sorted(walked(path("a"), WalkDepth::everything));
                  return names.size() == 2 ? names[0] + " " + names[1] : "wrong";
              }),
              "a/file a/locked/");
}

TEST_F(LinuxFileManagerTest, ExistsLogsOnceWhatItCannotLookAt) {
    EXPECT_FALSE(files_.exists(path("missing/file")));
    EXPECT_TRUE(log_.lines.empty());
    const std::string tooLong = path(std::string(300, 'n'));
    for (int look = 0; look < 3; ++look) EXPECT_FALSE(files_.exists(tooLong));
    EXPECT_EQ(log_.lines,
              std::vector<std::string>{"Could not look at " + tooLong + ": File name too long"});
}

TEST_F(LinuxFileManagerTest, ListLeavesItToTheCallerToSayWhatCannotBeListed) {
    disk_.makeFile("file");
    disk_.makeLink("away", "dangling");
    for (const char* name : {"missing", "file", "dangling"}) {
        EXPECT_FALSE(files_.list(path(name))) << name;
    }
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(LinuxFileManagerTest, WalkBearsThatTheVisitorChangesTheTree) {
    disk_.makeFolder("a");
    for (const char* name : {"a/x", "a/y"}) {
        disk_.makeFolder(name);
        disk_.makeFile(std::string(name) + "/file");
    }
    int visits = 0;
    files_.walk(path("a"), WalkDepth::everything, [&](const WalkEntry&) {
        ++visits;
        for (const char* name : {"a/x", "a/y"}) static_cast<void>(files_.remove(path(name)));
        disk_.makeFile("a/new" + std::to_string(visits));
    });
    EXPECT_EQ(visits, 2);
}

TEST_F(LinuxFileManagerTest, APackageIsAFolderWithASuffixOfTheList) {
    disk_.makeFolder("Tool.app");
    disk_.makeFolder("Tool.application");
    disk_.makeFolder("Tool.prefPane");
    disk_.makeFolder(".app");
    disk_.makeFile("file.app");
    disk_.makeLink("Tool.app", "link.app");
    for (const char* name : {"Tool.app", "Tool.app/", "Tool.prefPane"}) {
        EXPECT_TRUE(files_.isPackage(path(name))) << name;
    }
    for (const char* name :
         {"Tool.application", ".app", "file.app", "link.app", "link.app/", "missing.app", ""}) {
        EXPECT_FALSE(files_.isPackage(path(name))) << name;
    }
}

struct CountingSink : ProgressSink {
    void bytesCopied(std::uint64_t bytes) override { sum += bytes; }
    std::uint64_t sum = 0;
};

struct NamingSink : ProgressSink {
    std::vector<std::string> names;
    void bytesCopied(std::uint64_t /*bytes*/) override {}
    void fileBegins(const std::string& name) override { names.push_back(name); }
};

TEST_F(LinuxFileManagerTest, CopyTellsTheSinkEachFileOfAFolderAndNoneOfAFile) {
    for (const char* folder : {"Tool.app", "Tool.app/Contents"}) disk_.makeFolder(folder);
    disk_.makeFile("Tool.app/one", "1");
    disk_.makeFile("Tool.app/Contents/two", "2");
    disk_.makeFile("file", "");
    NamingSink sink;
    EXPECT_FALSE(files_.copy(path("file"), path("copy of file"), &sink));
    EXPECT_EQ(sink.names, std::vector<std::string>());
    EXPECT_FALSE(files_.copy(path("Tool.app"), path("copy"), &sink));
    EXPECT_EQ(sorted(sink.names), (std::vector<std::string>{"one", "two"}));
}

TEST_F(LinuxFileManagerTest, CopyTellsTheSinkEveryByte) {
    disk_.makeFolder("a");
    disk_.makeFile("a/one", std::string(70'000, 'x'));
    disk_.makeFile("a/two", "12345");
    CountingSink sink;
    EXPECT_FALSE(files_.copy(path("a"), path("b"), &sink));
    EXPECT_EQ(sink.sum, 70'005U);
    EXPECT_EQ(disk_.contents("b/two"), "12345");
}

// What a copy will move is what it then tells of.
TEST_F(LinuxFileManagerTest, BytesToCopyAreThoseThatACopyTells) {
    for (const char* folder : {"a", "a/.hidden folder", "a/Tool.app", "a/Tool.app/Contents"}) {
        disk_.makeFolder(folder);
    }
    disk_.makeFile("a/one", std::string(70'000, 'x'));
    disk_.makeFile("a/empty");
    disk_.makeFile("a/.hidden folder/.hidden", "12345");
    disk_.makeFile("a/Tool.app/Contents/x", "1234567");
    disk_.makeFile("outside", std::string(1000, 'x'));
    disk_.makeLink(path("outside"), "a/link");
    disk_.makeLink("nowhere", "a/dangling");
    ASSERT_EQ(link(path("a/one").c_str(), path("a/Tool.app/same").c_str()), 0);
    ASSERT_EQ(link(path("outside").c_str(), path("a/shared").c_str()), 0);
    disk_.makeFile("a/sparse");
    ASSERT_EQ(truncate(path("a/sparse").c_str(), 5'000'000), 0);
    for (const char* name : {"a", "a/", "a/one", "a/sparse", "a/link"}) {
        CountingSink sink;
        EXPECT_FALSE(files_.copy(path(name), path("copy"), &sink)) << name;
        EXPECT_EQ(files_.bytesToCopy(path(name)), sink.sum) << name;
        EXPECT_FALSE(files_.remove(path("copy")));
    }
    EXPECT_EQ(files_.bytesToCopy(path("a")), 70'000U + 5 + 7 + 1000 + 5'000'000);
}

TEST_F(LinuxFileManagerTest, BytesThatNobodyCanCopyCountAsNone) {
    disk_.makeFolder("a");
    disk_.makeFolder("a/closed");
    disk_.makeFile("a/closed/file", "12345");
    disk_.makeFile("a/open", "123");
    disk_.makeFifo("a/fifo");
    disk_.setMode("a/closed", 0);
    EXPECT_EQ(asOrdinaryUser([this] { return std::to_string(files_.bytesToCopy(path("a"))); }),
              "3");
    for (const std::string& name : {path("missing"), path("a/fifo"), std::string("relative"),
                                    std::string(), std::string("/a\0b", 4)}) {
        EXPECT_EQ(files_.bytesToCopy(name), 0U) << name;
    }
    disk_.setMode("a/closed", 0755);
}

TEST_F(LinuxFileManagerTest, CopiesAsRootDropWhatLetsOthersActAsTheOwner) {
    disk_.makeFile("file", "x", 06755);
    ASSERT_FALSE(
        LinuxFileManager(log_, LinkPolicy::trustedOnly).copy(path("file"), path("a"), nullptr));
    ASSERT_FALSE(LinuxFileManager(log_, LinkPolicy::follow).copy(path("file"), path("b"), nullptr));
    EXPECT_EQ(disk_.mode("a"), 0755U);
    EXPECT_EQ(disk_.mode("b"), 06755U);
}

TEST_F(LinuxFileManagerTest, BytesToCopyFollowLinksBeforeTheLastComponentOnly) {
    LinuxFileManager asRoot(log_, LinkPolicy::trustedOnly);
    disk_.makeFolder("folder");
    disk_.makeFile("folder/file", "12345");
    disk_.makeLink("folder", "link");
    EXPECT_EQ(asRoot.bytesToCopy(path("link/file")), 5U);
    EXPECT_EQ(asRoot.bytesToCopy(path("link")), 0U);
}

TEST_F(LinuxFileManagerTest, AttributesAreTheEntrysOwn) {
    disk_.makeFile("file", "x", 04751);
    disk_.setTimes("file", {1, 0}, {1'000'000'000, 123'456'789});
    disk_.makeFolder("folder", 01777);
    disk_.makeLink("file", "link");
    disk_.makeFifo("fifo");
    const auto file = files_.attributes(path("file")).value();
    EXPECT_EQ(file.type, FileType::regular);
    EXPECT_EQ(file.permissions, 04751U);
    EXPECT_EQ(file.modificationDate.time_since_epoch().count(), 1'000'000'000'123'456'789);
    EXPECT_EQ(files_.attributes(path("folder")).value().type, FileType::folder);
    EXPECT_EQ(files_.attributes(path("folder")).value().permissions, 01777U);
    EXPECT_EQ(files_.attributes(path("link")).value().type, FileType::symbolicLink);
    EXPECT_EQ(files_.attributes(path("fifo")).value().type, FileType::other);
    EXPECT_EQ(files_.attributes(path("missing")).error(), std::errc::no_such_file_or_directory);
}

TEST_F(LinuxFileManagerTest, SetAttributesSetsOwnerThenExactPermissions) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
    const Mask mask(077);
    disk_.makeFile("file", "x", 0600);
    // A change of owner clears the set-id bits: so they must come after it.
    EXPECT_FALSE(files_.setAttributes(path("file"), {"daemon", "admin", 06775}));
    EXPECT_EQ(disk_.mode("file"), 06775U);
    EXPECT_EQ(disk_.status("file").st_uid, getpwnam("daemon")->pw_uid);
    EXPECT_EQ(disk_.status("file").st_gid, administratorsGroup());
    EXPECT_FALSE(files_.setAttributes(path("file"), {{}, "daemon", {}}));
    EXPECT_EQ(disk_.status("file").st_gid, getgrnam("daemon")->gr_gid);
    EXPECT_EQ(disk_.status("file").st_uid, getpwnam("daemon")->pw_uid);
}

TEST_F(LinuxFileManagerTest, SetAttributesNeverFollowsALink) {
    disk_.makeFile("target", "x", 0600);
    disk_.makeLink("target", "link");
    disk_.makeLink("nowhere", "dangling");
    EXPECT_FALSE(files_.setAttributes(path("link"), {{}, {}, 0777}));
    EXPECT_FALSE(files_.setAttributes(path("dangling"), {{}, {}, 0777}));
    EXPECT_EQ(disk_.mode("target"), 0600U);
    if (geteuid() != 0) return;
    EXPECT_FALSE(files_.setAttributes(path("link"), {"daemon", "daemon", {}}));
    EXPECT_EQ(disk_.status("target").st_uid, 0U);
    EXPECT_NE(disk_.status("link").st_uid, 0U);
}

TEST_F(LinuxFileManagerTest, SetAttributesChangesNothingForUnknownNames) {
    disk_.makeFile("file", "x", 0600);
    EXPECT_EQ(files_.setAttributes(path("file"), {"no such user here", {}, 0777}),
              std::errc::invalid_argument);
    EXPECT_EQ(files_.setAttributes(path("file"), {{}, "no such group here", 0777}),
              std::errc::invalid_argument);
    EXPECT_EQ(disk_.mode("file"), 0600U);
    EXPECT_EQ(files_.setAttributes(path("missing"), {{}, {}, 0777}),
              std::errc::no_such_file_or_directory);
}

TEST_F(LinuxFileManagerTest, SetAttributesDoesNotOpenWhatItChanges) {
    disk_.makeFifo("fifo");
    EXPECT_FALSE(files_.setAttributes(path("fifo"), {{}, {}, 0640}));
    EXPECT_EQ(disk_.mode("fifo"), 0640U);
}

TEST_F(LinuxFileManagerTest, ReadGivesAtMostTheLimit) {
    const std::string text = std::string("a\0b", 3) + std::string(200'000, 'x');
    disk_.makeFile("file", text);
    disk_.makeFile("empty");
    disk_.makeLink("file", "link");
    EXPECT_EQ(files_.read(path("file"), 2).value(), text.substr(0, 2));
    EXPECT_EQ(files_.read(path("file"), 0).value(), "");
    EXPECT_EQ(files_.read(path("empty"), plenty).value(), "");
    EXPECT_TRUE(files_.read(path("link"), plenty).value() == text);
    EXPECT_TRUE(files_.read(path("file"), text.size()).value() == text);
    EXPECT_TRUE(files_.read(path("file"), SIZE_MAX).value() == text);
}

TEST_F(LinuxFileManagerTest, ReadOfAnEndlessOrHugeFileIsBounded) {
    disk_.makeFile("huge");
    ASSERT_EQ(truncate(path("huge").c_str(), off_t{1} << 40), 0);
    EXPECT_TRUE(files_.read(path("huge"), 100'000).value() == std::string(100'000, '\0'));
    EXPECT_EQ(files_.read("/proc/version", 5).value(), "Linux");
    EXPECT_GT(files_.read("/proc/version", plenty).value().size(), 20U);
}

TEST_F(LinuxFileManagerTest, ReadOpensRegularFilesOnlyAndNeverWaits) {
    disk_.makeFolder("folder");
    disk_.makeFifo("fifo");
    disk_.makeSocket("socket");
    disk_.makeLink("fifo", "link");
    disk_.makeLink("nowhere", "dangling");
    EXPECT_EQ(files_.read(path("folder"), plenty).error(), std::errc::is_a_directory);
    for (const char* name : {"fifo", "socket", "link"}) {
        EXPECT_EQ(files_.read(path(name), plenty).error(), std::errc::invalid_argument) << name;
    }
    EXPECT_EQ(files_.read("/dev/zero", plenty).error(), std::errc::invalid_argument);
    EXPECT_EQ(files_.read(path("dangling"), plenty).error(), std::errc::no_such_file_or_directory);
}

TEST_F(LinuxFileManagerTest, CreateFileReplacesWholeAndKeepsTheOldOneOpen) {
    const Mask mask(027);
    disk_.makeFile("file", "old contents", 0600);
    const int old = open(path("file").c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_FALSE(files_.createFile(path("file"), "new"));
    std::string kept(12, ' ');
    EXPECT_EQ(read(old, kept.data(), kept.size()), 12);
    close(old);
    EXPECT_EQ(kept, "old contents");
    EXPECT_EQ(disk_.contents("file"), "new");
    EXPECT_EQ(disk_.mode("file"), 0640U);
    EXPECT_FALSE(files_.createFile(path("another"), ""));
    EXPECT_EQ(disk_.names(), (std::vector<std::string>{"another", "file"}));
}

TEST_F(LinuxFileManagerTest, CreateFileReplacesALinkAndAFifoButNoFolder) {
    disk_.makeFile("target", "kept");
    disk_.makeLink("target", "link");
    disk_.makeFifo("fifo");
    disk_.makeFolder("folder");
    EXPECT_FALSE(files_.createFile(path("link"), "new"));
    EXPECT_FALSE(files_.createFile(path("fifo"), "new"));
    EXPECT_EQ(files_.createFile(path("folder"), "new"), std::errc::is_a_directory);
    EXPECT_EQ(files_.createFile(path("missing/file"), "new"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(disk_.contents("target"), "kept");
    EXPECT_EQ(disk_.contents("link"), "new");
    EXPECT_EQ(disk_.contents("fifo"), "new");
    EXPECT_EQ(disk_.names(), (std::vector<std::string>{"fifo", "folder", "link", "target"}));
}

TEST_F(LinuxFileManagerTest, WritesOverAnExistingFileWithoutEmptyingIt) {
    disk_.makeFile("file", "0123456789", 0640);
    {
        const auto file = files_.openForWriting(path("file"));
        ASSERT_TRUE(file);
        EXPECT_FALSE(file.value()->write("ab"));
        EXPECT_FALSE(file.value()->write("cd"));
        EXPECT_FALSE(file.value()->write(""));
    }
    EXPECT_EQ(disk_.contents("file"), "abcd456789");
    EXPECT_EQ(disk_.mode("file"), 0640U);
}

TEST_F(LinuxFileManagerTest, CutsAnOpenedFileOffAndFillsItUp) {
    disk_.makeFile("file", "0123456789");
    const auto file = files_.openForWriting(path("file"));
    ASSERT_TRUE(file);
    EXPECT_FALSE(file.value()->write("ab"));
    EXPECT_FALSE(file.value()->setSize(4));
    EXPECT_EQ(disk_.contents("file"), "ab23");
    EXPECT_FALSE(file.value()->setSize(5));
    EXPECT_EQ(disk_.contents("file"), std::string("ab23\0", 5));
    EXPECT_EQ(file.value()->setSize(std::numeric_limits<std::uint64_t>::max()),
              std::errc::file_too_large);
    EXPECT_FALSE(file.value()->write("cd"));
    EXPECT_EQ(disk_.contents("file"), std::string("abcd\0", 5));
}

TEST_F(LinuxFileManagerTest, OpensForWritingNothingButAnExistingRegularFile) {
    disk_.makeFile("target", "kept");
    disk_.makeLink("target", "link");
    disk_.makeFolder("folder");
    disk_.makeFifo("fifo");
    // With a reader there, an opening would succeed.
    const int reader = open(path("fifo").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const auto error = [&](const char* name) { return files_.openForWriting(path(name)).error(); };
    EXPECT_EQ(error("missing"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(error("link"), std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(error("folder"), std::errc::is_a_directory);
    EXPECT_EQ(error("fifo"), std::errc::invalid_argument);
    EXPECT_EQ(files_.openForWriting("/dev/null").error(), std::errc::invalid_argument);
    close(reader);
    EXPECT_FALSE(disk_.exists("missing"));
}

TEST_F(LinuxFileManagerTest, CreateFoldersAndRemoveWorkOnTheRealDisk) {
    const Mask mask(077);
    EXPECT_FALSE(files_.createFolders(path("a/b"), 0775));
    EXPECT_EQ(disk_.mode("a"), 0775U);
    EXPECT_FALSE(files_.remove(path("a")));
    EXPECT_FALSE(disk_.exists("a"));
}

}  // namespace
}  // namespace installer::test
