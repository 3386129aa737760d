#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/privileged/helper/PrivilegedHelperProgram.h"

namespace installer::test {
namespace {

using testing::HasSubstr;

/// The plan of a run that installs "into/Acme/F.plugin" and nothing else.
class AdministratorToolsTest : public PrivilegedHelperProgram {
  protected:
    void SetUp() override {
        PrivilegedHelperProgram::SetUp();
        if (IsSkipped()) return;
        ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
        folder.add("source", "new");
        folder.add("into/neighbour", "kept");
        folder.add("outside", "kept");
        grant.addFolder(folder / "into");
        grant.addDestination(item);
    }

    HelperProcess::Start start() const {
        return {.environment = {"PKEXEC_UID=65534"},
                .arguments = {"--started-by", "polkit"},
                .before = {},
                .grant = grant};
    }

    std::string item = folder / "into/Acme/F.plugin";
    WriteGrant grant;
};

const std::string owner = "nobody:admin";

/// Each command that changes the path.
std::vector<std::pair<std::string, std::vector<std::string>>> changesOf(const std::string& path,
                                                                        const std::string& source) {
    return {{"/bin/cp", {"-R", source, path}},
            {"/usr/sbin/chown", {"-R", owner, path}},
            {"/bin/chmod", {"-R", "0775", path}},
            {"/usr/sbin/chmod", {"-R", "0644", path}},
            {"/usr/bin/touch", {path}},
            {"/usr/bin/xattr", {"-dr", "com.apple.quarantine", path}},
            {"/bin/rm", {"-fR", path}}};
}

TEST_F(AdministratorToolsTest, DoEverythingWithWhatTheRunHasPlanned) {
    HelperProcess helper(start());
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(helper.run("/bin/mkdir", {"-m775", "-p", folder / "into/Acme"}), 0U);
    for (const auto& [tool, arguments] : changesOf(item, folder / "source")) {
        EXPECT_EQ(helper.run(tool, arguments), 0U) << tool;
    }
    EXPECT_FALSE(folder.holds("into/Acme/F.plugin"));
}

TEST_F(AdministratorToolsTest, RefuseEveryPathThatTheRunHasNotPlannedAndGoOn) {
    HelperProcess helper(start());
    ASSERT_TRUE(helper.saysHello());
    for (const char* name : {"outside", "into/neighbour", "into", "new", "into/new", "into/Acme"}) {
        for (const auto& [tool, arguments] : changesOf(folder / name, folder / "source")) {
            EXPECT_EQ(helper.run(tool, arguments), 126U) << tool << " " << name;
        }
    }
    for (const char* name : {"elsewhere", "into/Acme2", "into/neighbours"}) {
        EXPECT_EQ(helper.run("/bin/mkdir", {"-m775", "-p", folder / name}), 126U) << name;
        EXPECT_FALSE(folder.holds(name)) << name;
    }
    EXPECT_EQ(contentsOf(folder / "outside"), "kept");
    EXPECT_EQ(contentsOf(folder / "into/neighbour"), "kept");
    EXPECT_EQ(helper.run("/bin/mkdir", {"-m775", "-p", folder / "into/Acme"}), 0U);
    helper.closeConnection();
    EXPECT_THAT(helper.standardError(),
                HasSubstr("refused, since the run has not planned it: /bin/cp '-R'"));
}

TEST_F(AdministratorToolsTest, GiveAFolderToTheUserOnlyIfTheyMadeIt) {
    folder.add("into/Acme/Old/secret", "root's");
    grant.addDestination(folder / "into/Acme/Old/x");
    grant.addDestination(folder / "into/Acme/New/x");
    HelperProcess helper(start());
    ASSERT_TRUE(helper.saysHello());
    for (const char* name : {"into/Acme/Old", "into/Acme/New"}) {
        EXPECT_EQ(helper.run("/bin/mkdir", {"-m775", "-p", folder / name}), 0U);
    }
    EXPECT_EQ(helper.run("/usr/sbin/chown", {"-R", owner, folder / "into/Acme/Old"}), 126U);
    EXPECT_EQ(helper.run("/usr/sbin/chown", {"-R", owner, folder / "into/Acme/New"}), 0U);
    EXPECT_EQ(helper.run("/usr/sbin/chown", {"-R", owner, folder / "into/Acme"}), 126U);
    struct stat status{};
    ASSERT_EQ(::stat((folder / "into/Acme/Old/secret").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 0U);
    ASSERT_EQ(::stat((folder / "into/Acme/New").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, nobody);
}

TEST_F(AdministratorToolsTest, ChangeNothingWithoutAPlan) {
    grant = WriteGrant();
    HelperProcess helper(start());
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(helper.run("/usr/bin/touch", {item}), 126U);
    EXPECT_EQ(helper.run("/bin/rm", {"-fR", folder / "outside"}), 126U);
    EXPECT_TRUE(folder.holds("outside"));
}

TEST_F(AdministratorToolsTest, TakeNoPlanOutsideTheFoldersThatWereShown) {
    HelperProcess helper(start());
    ASSERT_TRUE(helper.saysHello());
    ASSERT_TRUE(helper.sendBytes(encodedPlan(
        {PlanTexts::Kind::destinations,
         {folder / "outside", folder / "into/../outside", folder / "into", "/etc/passwd"}})));
    EXPECT_EQ(helper.run("/bin/rm", {"-fR", folder / "outside"}), 126U);
    EXPECT_EQ(helper.run("/bin/rm", {"-fR", folder / "into"}), 126U);
    EXPECT_TRUE(folder.holds("outside"));
    EXPECT_TRUE(folder.holds("into/neighbour"));
}

TEST_F(AdministratorToolsTest, TakeNoPlanAfterTheFirstRequest) {
    HelperProcess helper(start());
    ASSERT_TRUE(helper.saysHello());
    ASSERT_EQ(helper.run("/bin/rm", {"-fR", item}), 0U);
    ASSERT_TRUE(
        helper.sendBytes(encodedPlan({PlanTexts::Kind::destinations, {folder / "into/neighbour"}}) +
                         encodedRequest({"/bin/rm", {"-fR", folder / "into/neighbour"}}).value()));
    EXPECT_EQ(helper.exitStatus(), 1);
    EXPECT_TRUE(folder.holds("into/neighbour"));
}

TEST_F(AdministratorToolsTest, TakeAPlanOfAsManyMessagesAsThereMayBe) {
    HelperProcess helper(start());
    ASSERT_TRUE(helper.saysHello()) << "which sends the first of them";
    const std::string plan = encodedPlan({PlanTexts::Kind::destinations, {item}});
    std::string plans;
    for (std::size_t index = 1; index < message_limits::planMessages; ++index) plans += plan;
    ASSERT_TRUE(helper.sendBytes(plans));
    EXPECT_EQ(helper.run("/bin/rm", {"-fR", item}), 0U);
}

TEST_F(AdministratorToolsTest, EndWithAPlanThatNeverEnds) {
    HelperProcess helper(start());
    ASSERT_TRUE(helper.saysHello());
    const std::string plan = encodedPlan({PlanTexts::Kind::destinations, {item}});
    std::string plans;
    for (std::size_t index = 0; index < message_limits::planMessages; ++index) plans += plan;
    static_cast<void>(helper.sendBytes(plans));
    EXPECT_EQ(helper.exitStatus(), 1);
}

TEST_F(AdministratorToolsTest, RemoveEntriesOfTheNamesThatTheRunMayRemove) {
    folder.add("into/deep/Old.plugin/x", "old");
    folder.add("Old.plugin", "kept");
    grant.addRemovableName("Old.plugin");
    HelperProcess helper(start());
    ASSERT_TRUE(helper.saysHello());
    const std::string old = folder / "into/deep/Old.plugin";
    EXPECT_EQ(helper.run("/usr/sbin/chown", {"-R", owner, old}), 126U);
    EXPECT_EQ(helper.run("/bin/rm", {"-fR", old}), 0U);
    EXPECT_FALSE(folder.holds("into/deep/Old.plugin"));
    EXPECT_EQ(helper.run("/bin/rm", {"-fR", folder / "Old.plugin"}), 126U);
    EXPECT_TRUE(folder.holds("Old.plugin"));
}

}  // namespace
}  // namespace installer::test
