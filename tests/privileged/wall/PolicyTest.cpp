#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "privileged/wall/Policy.h"

namespace installer::test {
namespace {

constexpr const char* lsregisterTool =
    "/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/"
    "LaunchServices.framework/Versions/A/Support/lsregister";

std::optional<Command> allowed(const std::string& tool, const std::vector<std::string>& arguments,
                               uid_t user = 65534) {
    InvokingUser invokingUser(user);
    return allowedCommand({tool, arguments}, invokingUser, ProtectedFolders());
}

TEST(Policy, MakesFoldersOfModes0775) {
    const auto command = allowed("/bin/mkdir", {"-m775", "-p", "/a/b"});
    ASSERT_TRUE(command);
    EXPECT_EQ(command->action, Action::makeFolders);
    EXPECT_EQ(command->path, "/a/b");
    EXPECT_EQ(command->mode, 0775U);
}

TEST(Policy, GivesFilesToTheInvokingUserAndTheAdministrators) {
    const auto command = allowed("/usr/sbin/chown", {"-R", "nobody:admin", "/a"});
    ASSERT_TRUE(command);
    EXPECT_EQ(command->action, Action::setOwner);
    EXPECT_EQ(command->path, "/a");
    EXPECT_TRUE(allowed("/usr/sbin/chown", {"-R", "root:admin", "/a"}, 0));
}

TEST(Policy, Removes) {
    const auto command = allowed("/bin/rm", {"-fR", "/a"});
    ASSERT_TRUE(command);
    EXPECT_EQ(command->action, Action::remove);
    EXPECT_EQ(command->path, "/a");
}

TEST(Policy, CopiesTheFirstPathToTheSecond) {
    const auto command = allowed("/bin/cp", {"-R", "/a", "/b"});
    ASSERT_TRUE(command);
    EXPECT_EQ(command->action, Action::copy);
    EXPECT_EQ(command->source, "/a");
    EXPECT_EQ(command->path, "/b");
}

TEST(Policy, SetsEachModeThroughItsOwnTool) {
    const auto installed = allowed("/bin/chmod", {"-R", "0775", "/a"});
    const auto identifier = allowed("/bin/chmod", {"-R", "0664", "/a"});
    const auto log = allowed("/usr/sbin/chmod", {"-R", "0644", "/a"});
    ASSERT_TRUE(installed && identifier && log);
    EXPECT_EQ(installed->mode, 0775U);
    EXPECT_EQ(identifier->mode, 0664U);
    EXPECT_EQ(log->mode, 0644U);
    EXPECT_EQ(log->action, Action::setMode);
}

TEST(Policy, Touches) {
    const auto command = allowed("/usr/bin/touch", {"/a"});
    ASSERT_TRUE(command);
    EXPECT_EQ(command->action, Action::touch);
}

TEST(Policy, FreesFromQuarantine) {
    const auto command = allowed("/usr/bin/xattr", {"-dr", "com.apple.quarantine", "/a"});
    ASSERT_TRUE(command);
    EXPECT_EQ(command->action, Action::removeQuarantine);
}

TEST(Policy, RefreshesTheDesktopDatabase) {
    const auto command = allowed(lsregisterTool, {"-apps"});
    ASSERT_TRUE(command);
    EXPECT_EQ(command->action, Action::refreshDesktopDatabase);
}

struct NearMiss {
    const char* name;
    std::string tool;
    std::vector<std::string> arguments;
};
void PrintTo(const NearMiss& row, std::ostream* out) {
    *out << row.name;
}

class PolicyNearMiss : public testing::TestWithParam<NearMiss> {};

TEST_P(PolicyNearMiss, IsRefused) {
    EXPECT_FALSE(allowed(GetParam().tool, GetParam().arguments));
}

INSTANTIATE_TEST_SUITE_P(
    Tools, PolicyNearMiss,
    testing::Values(NearMiss{"unknownTool", "/bin/sh", {"-c", "true"}},
                    NearMiss{"emptyTool", "", {}}, NearMiss{"relativeTool", "rm", {"-fR", "/a"}},
                    NearMiss{"toolElsewhere", "/usr/bin/rm", {"-fR", "/a"}},
                    NearMiss{"toolWithDot", "/bin/./rm", {"-fR", "/a"}},
                    NearMiss{"toolWithNul", std::string("/bin/rm\0x", 9), {"-fR", "/a"}},
                    NearMiss{"chownOfBin", "/bin/chown", {"-R", "nobody:admin", "/a"}},
                    NearMiss{"lsregisterByItsShortName", "lsregister", {"-apps"}}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Arguments, PolicyNearMiss,
    testing::Values(
        NearMiss{"mkdirOtherMode", "/bin/mkdir", {"-m777", "-p", "/a"}},
        NearMiss{"mkdirSetUser", "/bin/mkdir", {"-m4775", "-p", "/a"}},
        NearMiss{"mkdirSwappedOptions", "/bin/mkdir", {"-p", "-m775", "/a"}},
        NearMiss{"mkdirTwoFolders", "/bin/mkdir", {"-m775", "-p", "/a", "/b"}},
        NearMiss{"mkdirNoFolder", "/bin/mkdir", {"-m775", "-p"}},
        NearMiss{"rmNoArguments", "/bin/rm", {}}, NearMiss{"rmNoOption", "/bin/rm", {"/a"}},
        NearMiss{"rmOtherOption", "/bin/rm", {"-rf", "/a"}},
        NearMiss{"rmTwoPaths", "/bin/rm", {"-fR", "/a", "/b"}},
        NearMiss{"rmOptionAsPath", "/bin/rm", {"-fR", "--no-preserve-root"}},
        NearMiss{"cpOneSource", "/bin/cp", {"-R", "/a"}},
        NearMiss{"cpTwoSources", "/bin/cp", {"-R", "/a", "/b", "/c"}},
        NearMiss{"cpOtherOption", "/bin/cp", {"-a", "/a", "/b"}},
        NearMiss{"cpRelativeSource", "/bin/cp", {"-R", "a", "/b"}},
        NearMiss{"cpRelativeDestination", "/bin/cp", {"-R", "/a", "b"}},
        NearMiss{"cpParentInSource", "/bin/cp", {"-R", "/a/../b", "/c"}},
        NearMiss{"chmodSetUser", "/bin/chmod", {"-R", "4775", "/a"}},
        NearMiss{"chmodShortMode", "/bin/chmod", {"-R", "775", "/a"}},
        NearMiss{"chmodModeOfTheOther", "/bin/chmod", {"-R", "0644", "/a"}},
        NearMiss{"chmodOfSbinModeOfTheOther", "/usr/sbin/chmod", {"-R", "0775", "/a"}},
        NearMiss{"chmodOfSbinIdentifierMode", "/usr/sbin/chmod", {"-R", "0664", "/a"}},
        NearMiss{"chmodNotRecursive", "/bin/chmod", {"0775", "/a"}},
        NearMiss{"touchWithOption", "/usr/bin/touch", {"-c", "/a"}},
        NearMiss{"touchOptionAsPath", "/usr/bin/touch", {"-r/etc/passwd"}},
        NearMiss{"xattrOtherAttribute", "/usr/bin/xattr", {"-dr", "user.other", "/a"}},
        NearMiss{"xattrRealName", "/usr/bin/xattr", {"-dr", "user.com.apple.quarantine", "/a"}},
        NearMiss{"xattrWrite", "/usr/bin/xattr", {"-w", "com.apple.quarantine", "/a"}},
        NearMiss{"lsregisterOtherOption", lsregisterTool, {"-kill"}},
        NearMiss{"lsregisterWithFolder", lsregisterTool, {"-apps", "/a"}},
        NearMiss{"lsregisterNothing", lsregisterTool, {}}),
    [](const auto& row) { return std::string(row.param.name); });

const std::string chown = "/usr/sbin/chown";
INSTANTIATE_TEST_SUITE_P(
    Owners, PolicyNearMiss,
    testing::Values(NearMiss{"root", chown, {"-R", "root:admin", "/a"}},
                    NearMiss{"anotherUser", chown, {"-R", "daemon:admin", "/a"}},
                    NearMiss{"noSuchUser", chown, {"-R", "nosuchuser:admin", "/a"}},
                    NearMiss{"number", chown, {"-R", "65534:admin", "/a"}},
                    NearMiss{"rootsNumber", chown, {"-R", "0:admin", "/a"}},
                    NearMiss{"noOwner", chown, {"-R", ":admin", "/a"}},
                    NearMiss{"noGroup", chown, {"-R", "nobody", "/a"}},
                    NearMiss{"emptyGroup", chown, {"-R", "nobody:", "/a"}},
                    NearMiss{"realGroupsName", chown, {"-R", "nobody:sudo", "/a"}},
                    NearMiss{"anotherGroup", chown, {"-R", "nobody:shadow", "/a"}},
                    NearMiss{"oldSeparator", chown, {"-R", "nobody.admin", "/a"}},
                    NearMiss{"nulInOwner", chown, {"-R", std::string("nobody\0:admin", 13), "/a"}},
                    NearMiss{"followingLinks", chown, {"-RL", "nobody:admin", "/a"}},
                    NearMiss{"notRecursive", chown, {"nobody:admin", "/a"}},
                    NearMiss{"twoPaths", chown, {"-R", "nobody:admin", "/a", "/b"}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(PolicyPlainPath, TakesAnyBytesAsNames) {
    EXPECT_TRUE(isPlainPath("/a"));
    EXPECT_TRUE(isPlainPath("/Library/Application Support/x.y"));
    EXPECT_TRUE(isPlainPath("/-rf/ \n%\xff/..."));
    EXPECT_TRUE(isPlainPath("/..a/b../.c"));
}

TEST(PolicyPlainPath, IsAbsoluteAndNamesOnePlace) {
    for (const std::string path :
         {"", "/", "a", "a/b", "./a", "../a", "-fR", "/a/", "//a", "/a//b", "/.", "/..", "/a/.",
          "/a/..", "/a/./b", "/a/../b", "/a/b/../../etc", "~/a", "/a/b/"}) {
        EXPECT_FALSE(isPlainPath(path)) << path;
    }
    EXPECT_FALSE(isPlainPath(std::string("/a\0b", 4)));
    EXPECT_FALSE(isPlainPath(std::string("/a\0", 3)));
    EXPECT_FALSE(isPlainPath(std::string("\0/a", 3)));
}

TEST(PolicyPlainPath, FitsIntoWhatTheSystemTakes) {
    std::string path;
    while (path.size() < PATH_MAX - 3) path += "/a";
    path.resize(PATH_MAX - 2, 'a');
    EXPECT_TRUE(isPlainPath(path + "a"));
    EXPECT_FALSE(isPlainPath(path + "aa"));
}

}  // namespace
}  // namespace installer::test
