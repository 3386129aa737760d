// Copies that were announced: prepared by other threads or at their own moment, they are as if
// nobody had prepared them.

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "linux/files/LinuxFileManager.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

namespace fs = std::filesystem;

/// The files without a name that this process has open.
std::size_t namelessFiles() {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        const std::string target = fs::read_symlink(entry.path(), error).string();
        if (target.find("/#") != std::string::npos && target.ends_with("(deleted)")) ++count;
    }
    return count;
}

void awaitNamelessFiles(std::size_t count) {
    while (namelessFiles() < count) std::this_thread::yield();
}

CopySchedule scheduleOf(std::vector<ExpectedCopy> copies) {
    CopySchedule schedule;
    schedule.next = [copies = std::move(copies),
                     index = std::size_t{0}]() mutable -> std::optional<ExpectedCopy> {
        if (index == copies.size()) return std::nullopt;
        return copies[index++];
    };
    return schedule;
}

/// Everything in a folder, but for what no copy keeps.
std::vector<std::string> described(const std::string& folder) {
    std::vector<std::string> lines;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        struct stat status = {};
        EXPECT_EQ(::lstat(entry.path().c_str(), &status), 0);
        std::string line = entry.path().string().substr(folder.size());
        for (const auto number :
             {std::uint64_t{status.st_mode}, std::uint64_t{status.st_uid},
              std::uint64_t{status.st_gid}, static_cast<std::uint64_t>(status.st_nlink),
              static_cast<std::uint64_t>(status.st_mtim.tv_sec),
              static_cast<std::uint64_t>(status.st_mtim.tv_nsec)}) {
            line += ' ' + std::to_string(number);
        }
        std::array<char, 100> value{};
        const auto length = ::lgetxattr(entry.path().c_str(), "user.mark", value.data(), 100);
        if (length > 0) line += std::string(value.data(), static_cast<std::size_t>(length));
        if (entry.is_symlink()) {
            line += fs::read_symlink(entry.path()).string();
        } else if (entry.is_regular_file()) {
            std::string contents(entry.file_size(), '\0');
            std::ifstream(entry.path(), std::ios::binary)
                .read(contents.data(), static_cast<std::streamsize>(contents.size()));
            line += ' ' + std::to_string(contents.size()) + ' ' +
                    std::to_string(std::hash<std::string>()(contents));
        }
        lines.push_back(line);
    }
    std::ranges::sort(lines);
    return lines;
}

class CopyStagerTest : public testing::TestWithParam<unsigned> {
  protected:
    [[nodiscard]] std::string at(const std::string& name) const { return folder_ / name; }

    [[nodiscard]] ExpectedCopy copyOf(const std::string& name) const {
        const std::string source = at("source/" + name);
        std::error_code error;
        const auto size = fs::is_regular_file(source) ? fs::file_size(source, error) : 0;
        return {source, at("target/" + name), size};
    }

    void expect(const std::vector<std::string>& names) {
        std::vector<ExpectedCopy> copies;
        for (const std::string& name : names) copies.push_back(copyOf(name));
        files_.expectCopies(scheduleOf(std::move(copies)));
        // Threads prepare all of them at once, one thread alone none.
        if (GetParam() > 0) awaitNamelessFiles(names.size());
    }

    [[nodiscard]] std::error_code copy(const std::string& name) {
        return files_.copy(at("source/" + name), at("target/" + name), nullptr);
    }

    ScratchFolder folder_;
    RecordingLog log_;
    LinuxFileManager files_{log_, LinkPolicy::follow, GetParam()};
    std::string source_ = folder_.addFolder("source");
    std::string target_ = folder_.addFolder("target");
};

TEST_P(CopyStagerTest, ACopyIsNotSeenBeforeItsOwnMoment) {
    folder_.add("source/a", "first");
    folder_.add("source/b", "second");
    expect({"a", "b"});
    EXPECT_TRUE(folder_.names("target").empty());
    EXPECT_FALSE(copy("a"));
    EXPECT_EQ(folder_.names("target"), std::vector<std::string>{"a"});
    EXPECT_FALSE(copy("b"));
    EXPECT_EQ(folder_.read("target/b"), "second");
    EXPECT_EQ(namelessFiles(), 0U);
}

TEST_P(CopyStagerTest, ASourceThatChangedMeanwhileIsCopiedAgain) {
    folder_.add("source/a", "old text");
    folder_.add("source/b", "old text");
    folder_.add("source/c", "old text");
    expect({"a", "b", "c"});
    folder_.add("source/a", "new text");
    fs::rename(folder_.add("other", "of another file"), at("source/b"));
    folder_.add("source/c", "longer than it was");
    for (const char* name : {"a", "b", "c"}) EXPECT_FALSE(copy(name));
    EXPECT_EQ(folder_.read("target/a"), "new text");
    EXPECT_EQ(folder_.read("target/b"), "of another file");
    EXPECT_EQ(folder_.read("target/c"), "longer than it was");
}

TEST_P(CopyStagerTest, ASourceThatVanishedMeanwhileCannotBeCopied) {
    folder_.add("source/a", "text");
    expect({"a"});
    fs::remove(at("source/a"));
    EXPECT_EQ(copy("a"), std::errc::no_such_file_or_directory);
    EXPECT_TRUE(folder_.names("target").empty());
}

TEST_P(CopyStagerTest, AnEntryThatIsThereIsLeftAsItIs) {
    folder_.add("source/a", "new");
    expect({"a"});
    folder_.add("target/a", "old");
    EXPECT_EQ(copy("a"), std::errc::file_exists);
    EXPECT_EQ(folder_.read("target/a"), "old");
}

TEST_P(CopyStagerTest, CopiesThatAreLeftOutAreGivenUp) {
    for (const char* name : {"a", "b", "c"}) folder_.add(std::string("source/") + name, name);
    expect({"a", "b", "c"});
    EXPECT_FALSE(copy("c"));
    EXPECT_EQ(folder_.names("target"), std::vector<std::string>{"c"});
    EXPECT_EQ(namelessFiles(), 0U);
}

TEST_P(CopyStagerTest, AnUnexpectedCopyDisturbsNoExpectedOne) {
    for (const char* name : {"a", "b", "c"}) folder_.add(std::string("source/") + name, name);
    expect({"a", "b"});
    EXPECT_FALSE(copy("c"));
    EXPECT_FALSE(copy("a"));
    EXPECT_FALSE(copy("b"));
    for (const std::string name : {"a", "b", "c"}) EXPECT_EQ(folder_.read("target/" + name), name);
}

TEST_P(CopyStagerTest, NothingIsLeftOnceNothingIsExpected) {
    folder_.add("source/a", "text");
    expect({"a"});
    files_.expectCopies({});
    EXPECT_EQ(namelessFiles(), 0U);
    EXPECT_FALSE(copy("a"));
    EXPECT_EQ(folder_.read("target/a"), "text");
}

TEST_P(CopyStagerTest, ACopyGoesWhereItsPathLeadsAtItsOwnMoment) {
    for (const char* name : {"a", "b", "c"}) folder_.add(std::string("source/") + name, name);
    expect({"a", "b", "c"});
    EXPECT_FALSE(copy("a"));
    fs::rename(target_, at("moved"));
    fs::create_directory(target_);
    EXPECT_FALSE(copy("b"));
    EXPECT_EQ(folder_.names("moved"), std::vector<std::string>{"a"});
    EXPECT_EQ(folder_.names("target"), std::vector<std::string>{"b"});
    fs::remove_all(target_);
    EXPECT_EQ(copy("c"), std::errc::no_such_file_or_directory);
}

TEST_P(CopyStagerTest, AReplacedFolderIsSeenByTheNextLookAndCopy) {
    for (const char* name : {"a", "b", "c"}) folder_.add(std::string("source/") + name, name);
    expect({"a", "b", "c"});
    EXPECT_TRUE(files_.exists(target_));
    EXPECT_FALSE(copy("a"));
    fs::rename(target_, at("moved"));
    folder_.add("target/c", "old");
    EXPECT_TRUE(files_.exists(target_));
    EXPECT_FALSE(files_.exists(at("target/a")));
    EXPECT_TRUE(files_.exists(at("target/c")));
    EXPECT_FALSE(copy("b"));
    EXPECT_TRUE(files_.exists(at("target/b")));
    EXPECT_EQ(folder_.names("moved"), std::vector<std::string>{"a"});
    fs::remove_all(target_);
    EXPECT_FALSE(files_.exists(target_));
    EXPECT_FALSE(files_.exists(at("target/b")));
    EXPECT_EQ(copy("c"), std::errc::no_such_file_or_directory);
}

TEST_P(CopyStagerTest, EntriesThatOthersMakeAndRemoveAreSeen) {
    for (const char* name : {"a", "b"}) folder_.add(std::string("source/") + name, name);
    expect({"a", "b"});
    EXPECT_FALSE(copy("a"));
    EXPECT_TRUE(files_.exists(target_));
    EXPECT_TRUE(files_.exists(at("target/a")));
    EXPECT_FALSE(files_.exists(at("target/b")));
    folder_.add("target/b", "of another");
    EXPECT_TRUE(files_.exists(at("target/b")));
    fs::remove(at("target/a"));
    EXPECT_FALSE(files_.exists(at("target/a")));
    EXPECT_EQ(copy("b"), std::errc::file_exists);
    fs::remove(at("target/b"));
    EXPECT_FALSE(files_.exists(at("target/b")));
}

TEST_P(CopyStagerTest, AFolderIsFilledThroughALinkToIt) {
    folder_.addFolder("other");
    std::vector<ExpectedCopy> copies;
    for (const std::string name : {"a", "b", "c"}) {
        copies.push_back({folder_.add("source/" + name, name), at("link/" + name), 1});
    }
    const auto point = [this](const std::string& where) {
        fs::remove(at("link"));
        fs::create_directory_symlink(at(where), at("link"));
    };
    files_.expectCopies(scheduleOf(copies));
    for (const std::string where : {"target", "target", "other"}) {
        const ExpectedCopy copy = copies.front();
        copies.erase(copies.begin());
        point(where);
        EXPECT_TRUE(files_.exists(at("link")));
        EXPECT_FALSE(files_.exists(copy.destination));
        EXPECT_FALSE(files_.copy(copy.source, copy.destination, nullptr));
        EXPECT_TRUE(files_.exists(copy.destination));
        point("source");
        EXPECT_TRUE(files_.exists(copy.destination));
        point("nowhere");
        EXPECT_FALSE(files_.exists(copy.destination));
    }
    EXPECT_EQ(described(target_).size(), 2U);
    EXPECT_EQ(folder_.names("other"), std::vector<std::string>{"c"});
}

TEST_P(CopyStagerTest, AFolderThatIsMadeMeanwhileIsFilled) {
    folder_.add("source/a/b/file", "text");
    files_.expectCopies(scheduleOf({copyOf("a/b/file")}));
    if (GetParam() > 0) awaitNamelessFiles(1);
    ASSERT_FALSE(files_.createFolders(at("target/a/b"), 0755));
    EXPECT_FALSE(copy("a/b/file"));
    EXPECT_EQ(folder_.read("target/a/b/file"), "text");
}

TEST_P(CopyStagerTest, TellsTheSinkOfEveryByte) {
    class Sink : public ProgressSink {
      public:
        std::uint64_t bytes = 0;
        void bytesCopied(std::uint64_t more) override { bytes += more; }
    } sink;
    folder_.add("source/a", std::string(3 << 20, 'x'));
    expect({"a"});
    EXPECT_FALSE(files_.copy(at("source/a"), at("target/a"), &sink));
    EXPECT_EQ(sink.bytes, std::uint64_t{3} << 20);
}

TEST_P(CopyStagerTest, RootsCopiesHaveOwnerGroupAndModeWhenTheyAppear) {
    if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: needs root";
    folder_.add("source/file", "text");
    folder_.add("source/Tool.app/Contents/inner", "text");
    fs::create_symlink("nowhere", at("source/Tool.app/link"));
    LinuxFileManager files(log_, LinkPolicy::trustedOnly, GetParam());
    CopySchedule schedule = scheduleOf({copyOf("file"), copyOf("Tool.app")});
    schedule.attributes = {.owner = "nobody", .group = "admin", .permissions = 0775};
    files.expectCopies(std::move(schedule));
    for (const std::string name : {"file", "Tool.app"}) {
        ASSERT_FALSE(files.copy(at("source/" + name), at("target/" + name), nullptr));
        struct stat status = {};
        ASSERT_EQ(::lstat(at("target/" + name).c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, 65534U);
        EXPECT_EQ(status.st_mode & 07777U, 0775U);
        const FinishedTree& finished = files.finishedTree();
        EXPECT_TRUE(finished.hasOwner(at("target/" + name), 65534, status.st_gid));
        EXPECT_FALSE(finished.hasOwner(at("target/" + name), 0, status.st_gid));
        EXPECT_TRUE(finished.hasMode(at("target/" + name), 0775));
        EXPECT_FALSE(finished.hasMode(at("target/" + name), 0644));
        EXPECT_TRUE(finished.hasNoAttributes(at("target/" + name)));
        EXPECT_FALSE(finished.hasMode(at("source/" + name), 0775));
        // Any change since then makes it unknown.
        ASSERT_EQ(::chmod(at("target/" + name).c_str(), 0700), 0);
        EXPECT_FALSE(finished.hasMode(at("target/" + name), 0775));
    }
    for (const std::string& line : described(target_)) {
        EXPECT_NE(line.find(" 65534 "), std::string::npos) << line;
    }
}

/// A payload of files, folders, links and hard links.
class RandomPayload {
  public:
    RandomPayload(const ScratchFolder& folder, unsigned seed) : folder_(folder), random_(seed) {}

    [[nodiscard]] std::vector<std::string> make() {
        std::vector<std::string> items;
        for (int item = 0; item < 60; ++item) {
            std::string name = std::to_string(item);
            if (below(3) == 0) {
                fill("source/" + name, 2);
            } else {
                addFile("source/" + name);
            }
            items.push_back(std::move(name));
        }
        return items;
    }

  private:
    unsigned below(unsigned end) { return static_cast<unsigned>(random_() % end); }

    void addFile(const std::string& path) {
        const std::array<std::size_t, 5> sizes = {0, 1, 5000, 70000, 300000};
        folder_.add(path, std::string(sizes.at(below(5)), static_cast<char>('a' + below(26))));
        const std::array<mode_t, 5> modes = {0644, 0755, 0600, 0444, 04755};
        const std::string place = folder_ / path;
        if (below(4) == 0) ::setxattr(place.c_str(), "user.mark", "m", 1, 0);
        ::chmod(place.c_str(), modes.at(below(5)));
        const std::array<timespec, 2> times = {timespec{below(1U << 30), below(1000000000)},
                                               timespec{below(1U << 30), below(1000000000)}};
        ::utimensat(AT_FDCWD, place.c_str(), times.data(), 0);
    }

    void fill(const std::string& path, int depth) {
        folder_.addFolder(path);
        const unsigned count = below(8);
        for (unsigned entry = 0; entry < count; ++entry) {
            const std::string name = path + "/" + std::to_string(entry);
            if (depth > 0 && below(4) == 0) {
                fill(name, depth - 1);
                continue;
            }
            addFile(name);
            if (below(4) == 0) fs::create_symlink(std::to_string(below(9)), folder_ / (name + "l"));
            if (below(4) == 0) fs::create_hard_link(folder_ / name, folder_ / (name + "h"));
        }
    }

    const ScratchFolder& folder_;
    std::mt19937 random_;
};

TEST_P(CopyStagerTest, RandomPayloadsArriveAsWithoutPreparing) {
    for (unsigned seed = 1; seed <= 3; ++seed) {
        fs::remove_all(source_);
        fs::remove_all(target_);
        fs::remove_all(at("plain"));
        folder_.addFolder("target");
        folder_.addFolder("plain");
        const auto items = RandomPayload(folder_, seed).make();
        std::vector<ExpectedCopy> copies;
        for (const std::string& name : items) copies.push_back(copyOf(name));
        LinuxFileManager plain(log_, LinkPolicy::follow, 0);
        files_.expectCopies(scheduleOf(copies));
        for (const std::string& name : items) {
            EXPECT_FALSE(copy(name));
            EXPECT_FALSE(plain.copy(at("source/" + name), at("plain/" + name), nullptr));
        }
        EXPECT_EQ(described(target_), described(at("plain"))) << "seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(Threads, CopyStagerTest, testing::Values(0U, 1U, 3U),
                         [](const auto& threads) { return std::to_string(threads.param); });

}  // namespace
}  // namespace installer::test
