// By whose rights the helper reads what it copies.

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "tests/privileged/helper/PrivilegedHelperProgram.h"

namespace installer::test {
namespace {

/// The helper of an ordinary user, in a folder that everybody may look into.
class SourceRights : public PrivilegedHelperProgram {
  protected:
    void SetUp() override {
        PrivilegedHelperProgram::SetUp();
        if (IsSkipped()) return;
        ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
        folder.add("payload/open", "for everybody");
        folder.add("secret", "root's");
        ASSERT_EQ(::chmod((folder / "secret").c_str(), 0600), 0);
        helper.emplace(HelperProcess::Start{.environment = {"PKEXEC_UID=65534"},
                                            .arguments = {"--started-by", "polkit"},
                                            .before = {}});
        ASSERT_TRUE(helper->saysHello());
    }

    std::optional<std::uint32_t> copy(const std::string& name) {
        return helper->run("/bin/cp", {"-R", folder / name, folder / "copy"});
    }

    void giveToTheUser(const std::string& name) {
        ASSERT_EQ(::lchown((folder / name).c_str(), nobody, nobody), 0);
    }

    std::optional<HelperProcess> helper;
};

TEST_F(SourceRights, CopyNoFileThatTheUserMayNotRead) {
    EXPECT_EQ(copy("secret"), 1U);
    EXPECT_FALSE(folder.holds("copy"));
    EXPECT_EQ(helper->run("/bin/cp", {"-R", "/etc/shadow", folder / "copy"}), 1U);
    EXPECT_FALSE(folder.holds("copy"));
}

TEST_F(SourceRights, CopyNoTreeThatHoldsSuchAFile) {
    std::filesystem::rename(folder / "secret", folder / "payload/secret");
    EXPECT_EQ(copy("payload"), 1U);
    EXPECT_FALSE(folder.holds("copy"));
    EXPECT_EQ(folder.names(""), (std::vector<std::string>{"payload"})) << "nothing is left of it";
}

TEST_F(SourceRights, CopyNoFolderThatTheUserMayNotListOrEnter) {
    for (const mode_t mode : {mode_t{0700}, mode_t{0711}}) {
        folder.add("payload/closed/file", "root's");
        ASSERT_EQ(::chmod((folder / "payload/closed").c_str(), mode), 0);
        EXPECT_EQ(copy("payload"), 1U);
        EXPECT_FALSE(folder.holds("copy"));
    }
    ASSERT_EQ(::chmod((folder / "payload/closed").c_str(), 0700), 0);
    EXPECT_EQ(copy("payload/closed/file"), 1U);
    EXPECT_FALSE(folder.holds("copy"));
}

TEST_F(SourceRights, CopyALinkToASecretAsALink) {
    std::filesystem::create_symlink(folder / "secret", folder / "payload/link");
    giveToTheUser("payload/link");
    EXPECT_EQ(copy("payload"), 0U);
    EXPECT_EQ(std::filesystem::read_symlink(folder / "copy/link"), folder / "secret");
    EXPECT_EQ(helper->run("/bin/rm", {"-fR", folder / "copy"}), 0U);
    EXPECT_EQ(copy("payload/link/x"), 1U) << "no link leads on";
}

TEST_F(SourceRights, CopyWhatOnlyTheUserMayRead) {
    folder.add("payload/own/file", "the user's");
    ASSERT_EQ(
        ::setxattr((folder / "payload/own/file").c_str(), "user.installer.test", "kept", 4, 0), 0);
    for (const char* name : {"payload/own/file", "payload/own"}) {
        giveToTheUser(name);
        ASSERT_EQ(::chmod((folder / name).c_str(), 0700), 0);
    }
    EXPECT_EQ(copy("payload"), 0U);
    EXPECT_EQ(folder.read("copy/own/file"), "the user's");
    std::array<char, 8> value{};
    EXPECT_EQ(::getxattr((folder / "copy/own/file").c_str(), "user.installer.test", value.data(),
                         value.size()),
              4);
}

TEST_F(SourceRights, LeaveTheCopyToRoot) {
    EXPECT_EQ(copy("payload"), 0U);
    for (const char* name : {"copy", "copy/open"}) {
        struct stat status{};
        ASSERT_EQ(::lstat((folder / name).c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, 0U) << name;
        EXPECT_EQ(status.st_gid, 0U) << name;
    }
}

TEST_F(SourceRights, AreThoseOfTheUsersGroupsToo) {
    // Nobody's other groups are none, so what root's groups may read stays closed.
    ASSERT_EQ(::chmod((folder / "secret").c_str(), 0640), 0);
    EXPECT_EQ(copy("secret"), 1U);
    ASSERT_EQ(::lchown((folder / "secret").c_str(), 0, nobody), 0);
    EXPECT_EQ(copy("secret"), 0U);
}

TEST_F(SourceRights, AreRootsOwnWhereRootInstalls) {
    helper.emplace();
    ASSERT_TRUE(helper->saysHello());
    EXPECT_EQ(copy("secret"), 0U);
    EXPECT_EQ(folder.read("copy"), "root's");
}

}  // namespace
}  // namespace installer::test
