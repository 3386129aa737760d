// The helper does the work of the system's own tools itself. Each test gives two equal trees, one
// to the tool and one to the helper, and compares what became of them. Where the helper is meant
// to differ, the test's name says "Unlike".

#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "privileged/system/AdminGroup.h"
#include "tests/privileged/helper/HelperProcess.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

namespace fs = std::filesystem;

/// The exit status of the real tool, run with the helper's mask.
int runTool(const std::string& path, std::vector<std::string> arguments) {
    const pid_t process = ::fork();
    if (process == 0) {
        ::umask(022);
        ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
        std::vector<char*> list{const_cast<char*>(path.c_str())};
        for (std::string& argument : arguments) list.push_back(argument.data());
        list.push_back(nullptr);
        ::execv(path.c_str(), list.data());
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string linkOrContents(const fs::path& path, const struct stat& status) {
    if (S_ISLNK(status.st_mode)) return " -> " + fs::read_symlink(path).string();
    if (!S_ISREG(status.st_mode)) return "";
    std::ifstream file(path, std::ios::binary);
    const std::string contents(std::istreambuf_iterator<char>(file), {});
    return " = " + contents.substr(0, 10) + " #" +
           std::to_string(std::hash<std::string>()(contents));
}

enum class Times { compared, left };

std::string described(const fs::path& path, const std::string& name, Times times) {
    struct stat status{};
    if (::lstat(path.c_str(), &status) != 0) return name + " missing";
    std::array<char, 200> line{};
    std::snprintf(line.data(), line.size(), " %o %u:%u", status.st_mode, status.st_uid,
                  status.st_gid);
    std::string text = name + line.data();
    if (!S_ISDIR(status.st_mode)) text += " links " + std::to_string(status.st_nlink);
    if (times == Times::compared) {
        text += " time " + std::to_string(status.st_mtim.tv_sec) + "." +
                std::to_string(status.st_mtim.tv_nsec);
    }
    std::array<char, 100> attribute{};
    const ssize_t size =
        ::lgetxattr(path.c_str(), "user.installer.test", attribute.data(), attribute.size());
    if (size > 0) text += " attribute " + std::string(attribute.data(), static_cast<size_t>(size));
    return text + linkOrContents(path, status);
}

/// One line per entry of the tree, in the order of their names.
std::vector<std::string> snapshot(const std::string& root, Times times = Times::left) {
    std::vector<std::string> lines{described(root, ".", times)};
    std::error_code ignored;
    if (fs::is_directory(fs::symlink_status(root, ignored))) {
        for (const auto& entry : fs::recursive_directory_iterator(root)) {
            const std::string name = fs::relative(entry.path().parent_path(), root).string() + "/" +
                                     entry.path().filename().string();
            lines.push_back(described(entry.path(), name, times));
        }
    }
    std::ranges::sort(lines);
    return lines;
}

std::vector<std::string> withoutModesAndLinkCounts(std::vector<std::string> lines) {
    static const std::regex mode(" (4|10|12)0[0-7]{3,4}( [0-9]+:[0-9]+)");
    static const std::regex extra("( links [0-9]+)|( attribute kept)");
    for (std::string& line : lines) {
        line = std::regex_replace(line, mode, " $1$2", std::regex_constants::format_first_only);
        line = std::regex_replace(line, extra, "");
    }
    return lines;
}

class HelperAgainstTools : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: the helper's tests must run as root";
        // The helper reads as the ordinary user whom it acts for.
        ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
        // Beside the trees, so that links may lead out of them.
        folder.add("outside/canary", "alive");
        for (const char* side : {"tool", "helper"}) {
            makeTree(std::string(side) + "/tree");
            setTimes(folder / side);
        }
        HelperProcess::Start start;
        start.environment = {"PKEXEC_UID=65534"};
        start.arguments = {"--started-by", "polkit"};
        helper.emplace(start);
        ASSERT_TRUE(helper->saysHello());
    }

    void makeTree(const std::string& tree) const {
        folder.add(tree + "/file", "contents");
        folder.add(tree + "/-rf", "");
        folder.add(tree + "/name with \n and \xff", "odd");
        folder.add(tree + "/.hidden/deep/er/file", "deep");
        folder.add(tree + "/big", std::string(300000, 'b'));
        fs::create_directories(folder / (tree + "/empty"));
        fs::create_symlink(folder / "outside", folder / (tree + "/link out"));
        fs::create_symlink("file", folder / (tree + "/link in"));
        fs::create_symlink("/nowhere", folder / (tree + "/dangling"));
        fs::create_hard_link(folder / (tree + "/file"), folder / (tree + "/empty/same"));
        ::chmod((folder / (tree + "/file")).c_str(), 0604);
        ::chmod((folder / (tree + "/big")).c_str(), 0555);
        ::chmod((folder / (tree + "/.hidden")).c_str(), 0715);
        ::setxattr((folder / (tree + "/big")).c_str(), "user.installer.test", "kept", 4, 0);
    }

    /// Old times for all, so that a change shows.
    static void setTimes(const std::string& root) {
        const std::array<timespec, 2> times{timespec{1000000000, 123456789},
                                            timespec{1100000000, 987654321}};
        std::vector<std::string> paths{root};
        for (const auto& entry : fs::recursive_directory_iterator(root)) {
            paths.push_back(entry.path());
        }
        for (auto path = paths.rbegin(); path != paths.rend(); ++path) {
            ::utimensat(AT_FDCWD, path->c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
        }
    }

    [[nodiscard]] std::string toolPath(const std::string& name) const {
        return folder / ("tool/" + name);
    }
    [[nodiscard]] std::string helperPath(const std::string& name) const {
        return folder / ("helper/" + name);
    }

    /// Runs both with `name` as their last argument; they must agree on success.
    void runBoth(const std::string& program, const std::string& tool,
                 const std::vector<std::string>& toolOptions,
                 const std::vector<std::string>& helperOptions, const std::string& name) {
        std::vector<std::string> toolArguments = toolOptions;
        std::vector<std::string> helperArguments = helperOptions;
        toolArguments.push_back(toolPath(name));
        helperArguments.push_back(helperPath(name));
        const int toolStatus = runTool(program, toolArguments);
        const auto helperStatus = helper->run(tool, helperArguments);
        ASSERT_TRUE(helperStatus);
        EXPECT_EQ(toolStatus == 0, *helperStatus == 0) << toolStatus << " " << *helperStatus;
    }
    void runBoth(const std::string& tool, const std::vector<std::string>& options,
                 const std::string& name) {
        runBoth(tool, tool, options, options, name);
    }

    void expectEqualTrees(Times times = Times::left) const {
        EXPECT_EQ(snapshot(folder / "helper", times), snapshot(folder / "tool", times));
        EXPECT_EQ(snapshot(folder / "outside").size(), 2U);
        EXPECT_THAT(described(folder / "outside/canary", "canary", Times::left),
                    testing::StartsWith("canary 100644 0:0 links 1 = alive #"));
    }

    ScratchFolder folder;
    std::optional<HelperProcess> helper;
};

TEST_F(HelperAgainstTools, MkdirMakesTheSameFolders) {
    for (const char* name : {"new", "a/b/c", "tree", "tree/file", "tree/file/below",
                             "tree/dangling", "tree/empty/-x"}) {
        SCOPED_TRACE(name);
        runBoth("/bin/mkdir", {"-m775", "-p"}, name);
    }
    expectEqualTrees();
}

TEST_F(HelperAgainstTools, RmRemovesTheSame) {
    for (const char* name : {"tree/file", "missing", "tree/big/below", "missing/below",
                             "tree/link out", "tree/dangling", "tree/.hidden"}) {
        SCOPED_TRACE(name);
        runBoth("/bin/rm", {"-fR"}, name);
        expectEqualTrees();
    }
    runBoth("/bin/rm", {"-fR"}, "tree");
    expectEqualTrees();
    EXPECT_FALSE(folder.holds("helper/tree"));
}

TEST_F(HelperAgainstTools, CpMakesTheSameEntries) {
    const std::vector<std::string> tool{"-R", toolPath("tree"), toolPath("copy")};
    const std::vector<std::string> own{"-R", helperPath("tree"), helperPath("copy")};
    EXPECT_EQ(runTool("/bin/cp", tool), 0);
    EXPECT_EQ(helper->run("/bin/cp", own), 0U);
    // Names, types, owners, link targets and contents; modes and links are the next test's.
    EXPECT_EQ(withoutModesAndLinkCounts(snapshot(helperPath("copy"))),
              withoutModesAndLinkCounts(snapshot(toolPath("copy"))));
}

TEST_F(HelperAgainstTools, CopyKeepsModesTimesAttributesAndHardLinksThoughPlainCpDoesNot) {
    const std::vector<std::string> tool{"-R", "--preserve=mode,timestamps,links,xattr",
                                        toolPath("tree"), toolPath("copy")};
    const std::vector<std::string> own{"-R", helperPath("tree"), helperPath("copy")};
    EXPECT_EQ(runTool("/bin/cp", tool), 0);
    EXPECT_EQ(helper->run("/bin/cp", own), 0U);
    EXPECT_EQ(snapshot(helperPath("copy"), Times::compared),
              snapshot(toolPath("copy"), Times::compared));
}

TEST_F(HelperAgainstTools, CpTakesSingleFilesAndLinks) {
    for (const std::string name : {"file", "link out", "dangling", "-rf"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(runTool("/bin/cp", {"-Rp", toolPath("tree/" + name), toolPath(name)}), 0);
        EXPECT_EQ(helper->run("/bin/cp", {"-R", helperPath("tree/" + name), helperPath(name)}), 0U);
        EXPECT_EQ(described(helperPath(name), name, Times::compared),
                  described(toolPath(name), name, Times::compared));
    }
}

TEST_F(HelperAgainstTools, CpFailsAlikeWithoutSourceOrFolder) {
    EXPECT_NE(runTool("/bin/cp", {"-R", toolPath("missing"), toolPath("copy")}), 0);
    EXPECT_EQ(helper->run("/bin/cp", {"-R", helperPath("missing"), helperPath("copy")}), 1U);
    EXPECT_NE(runTool("/bin/cp", {"-R", toolPath("tree"), toolPath("missing/copy")}), 0);
    EXPECT_EQ(helper->run("/bin/cp", {"-R", helperPath("tree"), helperPath("missing/copy")}), 1U);
    expectEqualTrees(Times::compared);
}

TEST_F(HelperAgainstTools, CopyRefusesAFifoAndLeavesNothingThoughCpCopiesIt) {
    ASSERT_EQ(::mkfifo((folder / "helper/tree/.hidden/deep/fifo").c_str(), 0600), 0);
    EXPECT_EQ(helper->run("/bin/cp", {"-R", helperPath("tree"), helperPath("copy")}), 1U);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "helper"), fs::directory_iterator()),
              1);
}

TEST_F(HelperAgainstTools, CopyDropsWhatLetsOthersActAsTheOwnerThoughCpKeepsIt) {
    ::chmod(helperPath("tree/big").c_str(), 06755);
    ::chmod(helperPath("tree/empty").c_str(), 03775);
    EXPECT_EQ(helper->run("/bin/cp", {"-R", helperPath("tree"), helperPath("copy")}), 0U);
    EXPECT_EQ(helper->run("/bin/cp", {"-R", helperPath("tree/big"), helperPath("big")}), 0U);
    struct stat status{};
    ASSERT_EQ(::stat(helperPath("copy/big").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0755U);
    ASSERT_EQ(::stat(helperPath("copy/empty").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 01775U);
    ASSERT_EQ(::stat(helperPath("big").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0755U);
}

TEST_F(HelperAgainstTools, CopyNeverNestsIntoAnExistingFolderThoughCpDoes) {
    folder.add("helper/copy/old", "old");
    const auto before = snapshot(folder / "helper", Times::compared);
    EXPECT_EQ(helper->run("/bin/cp", {"-R", helperPath("tree"), helperPath("copy")}), 1U);
    EXPECT_EQ(snapshot(folder / "helper", Times::compared), before);
}

TEST_F(HelperAgainstTools, ChownChangesTheSameOwnersAndNoTargetOfALink) {
    const std::string group = ::getgrgid(administratorsGroup())->gr_name;
    ::chmod(toolPath("tree/big").c_str(), 06755);
    ::chmod(helperPath("tree/big").c_str(), 06755);
    for (const char* name : {"tree/file", "tree/link out", "tree/missing", "tree"}) {
        SCOPED_TRACE(name);
        runBoth("/usr/bin/chown", "/usr/sbin/chown", {"-R", "nobody:" + group},
                {"-R", "nobody:admin"}, name);
        expectEqualTrees(Times::compared);
    }
}

TEST_F(HelperAgainstTools, ChmodSetsTheSameModesAndFollowsNoLinkInATree) {
    for (const std::string mode : {"0664", "0775"}) {
        runBoth("/bin/chmod", {"-R", mode}, "tree");
        runBoth("/bin/chmod", {"-R", mode}, "tree/missing");
        expectEqualTrees(Times::compared);
    }
    runBoth("/bin/chmod", "/usr/sbin/chmod", {"-R", "0644"}, {"-R", "0644"}, "tree/file");
    runBoth("/bin/chmod", "/usr/sbin/chmod", {"-R", "0644"}, {"-R", "0644"}, "tree");
    expectEqualTrees(Times::compared);
}

TEST_F(HelperAgainstTools, ModeChangeClearsSetGroupBitsOfFoldersThoughChmodKeepsThem) {
    ::chmod(helperPath("tree/empty").c_str(), 07777);
    EXPECT_EQ(helper->run("/bin/chmod", {"-R", "0775", helperPath("tree")}), 0U);
    struct stat status{};
    ASSERT_EQ(::stat(helperPath("tree/empty").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0775U);
}

TEST_F(HelperAgainstTools, ModeChangeNeverFollowsTheGivenLinkThoughChmodDoes) {
    ASSERT_TRUE(helper->run("/bin/chmod", {"-R", "0775", helperPath("tree/link out")}));
    expectEqualTrees(Times::compared);
}

TEST_F(HelperAgainstTools, TouchMakesTheSameFilesAndRenewsTimes) {
    const timespec before{std::time(nullptr) - 1, 0};
    for (const char* name : {"new", "tree/file", "tree/empty", "missing/new", "tree/file/below"}) {
        SCOPED_TRACE(name);
        runBoth("/usr/bin/touch", {}, name);
    }
    expectEqualTrees();
    for (const char* name : {"new", "tree/file", "tree/empty"}) {
        struct stat status{};
        ASSERT_EQ(::stat(helperPath(name).c_str(), &status), 0);
        EXPECT_GT(status.st_mtim.tv_sec, before.tv_sec - 1) << name;
    }
}

TEST_F(HelperAgainstTools, TouchingNeverFollowsALinkThoughTouchDoes) {
    fs::create_symlink(folder / "outside/made", folder / "helper/link");
    ASSERT_TRUE(helper->run("/usr/bin/touch", {helperPath("link")}));
    EXPECT_FALSE(folder.holds("outside/made"));
}

TEST_F(HelperAgainstTools, XattrRemovesTheQuarantineAttributeAndNoOther) {
    constexpr const char* quarantine = "user.com.apple.quarantine";
    const std::string big = helperPath("tree/big");
    const std::string deep = helperPath("tree/.hidden/deep");
    ASSERT_EQ(::setxattr(big.c_str(), quarantine, "q", 1, 0), 0);
    ASSERT_EQ(::setxattr(deep.c_str(), quarantine, "q", 1, 0), 0);
    const std::string canary = folder / "outside/canary";
    ASSERT_EQ(::setxattr(canary.c_str(), quarantine, "q", 1, 0), 0);
    const std::vector<std::string> arguments{"-dr", "com.apple.quarantine", helperPath("tree")};
    EXPECT_EQ(helper->run("/usr/bin/xattr", arguments), 0U);
    EXPECT_EQ(helper->run("/usr/bin/xattr", arguments), 0U) << "nothing left to remove";
    EXPECT_LT(::getxattr(big.c_str(), quarantine, nullptr, 0), 0);
    EXPECT_LT(::getxattr(deep.c_str(), quarantine, nullptr, 0), 0);
    EXPECT_EQ(::getxattr(canary.c_str(), quarantine, nullptr, 0), 1);
    expectEqualTrees(Times::compared);
}

}  // namespace
}  // namespace installer::test
