#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hosts/HostModel.h"
#include "install/after/EarlierCopies.h"
#include "install/plan/InstallPlan.h"
#include "install/plan/PlannedWrites.h"
#include "linux/files/LinuxFileManager.h"
#include "linux/files/LinuxFileQuery.h"
#include "linux/process/PollEventLoop.h"
#include "linux/rights/LinuxAuthorization.h"
#include "privileged/system/AdminGroup.h"
#include "steps/install/InstallFilesController.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

// The operations that no run calls yet, on a real disk, for an ordinary user, with the privileged
// helper at the other end.

namespace installer::test {
namespace {

using testing::IsEmpty;
using testing::MatchesRegex;
using testing::UnorderedElementsAre;

constexpr uid_t nobody = 65534;

/// The process as an ordinary user, for as long as it lives. What was started before stays root.
class OrdinaryUser {
  public:
    OrdinaryUser() {
        groups_.resize(static_cast<std::size_t>(::getgroups(0, nullptr)));
        EXPECT_GE(::getgroups(static_cast<int>(groups_.size()), groups_.data()), 0);
        EXPECT_EQ(::setgroups(0, nullptr), 0);
        EXPECT_EQ(::setegid(nobody), 0);
        EXPECT_EQ(::seteuid(nobody), 0);
    }
    ~OrdinaryUser() {
        EXPECT_EQ(::seteuid(0), 0);
        EXPECT_EQ(::setegid(0), 0);
        EXPECT_EQ(::setgroups(groups_.size(), groups_.data()), 0);
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  private:
    std::vector<gid_t> groups_;
};

class EndedTool : public PrivilegedTool {
  public:
    void waitUntilEnded() override {}
    std::size_t readOutput(std::span<char>) override { return 0; }
    [[nodiscard]] bool hasSucceeded() const override { return true; }
};

/// Passes everything on but the refresh of this machine's own application database.
class NoRefresh : public Authorization {
  public:
    explicit NoRefresh(Authorization& real) : real_(real) {}
    bool obtain(std::uint32_t flags) override { return real_.obtain(flags); }
    /// The helper that is running has been told.
    void limitTo(const WriteGrant& /*grant*/) override {}
    PrivilegedLaunch execute(const std::string& tool,
                             const std::vector<std::string>& arguments) override {
        if (tool.ends_with("lsregister")) return {0, std::make_unique<EndedTool>()};
        return real_.execute(tool, arguments);
    }
    void setProgressSink(ProgressSink* progress) override { real_.setProgressSink(progress); }

  private:
    Authorization& real_;
};

/// Gives out an authorization whose helper is running already.
class StartedAuthorizations : public Authorizations {
  public:
    explicit StartedAuthorizations(const std::unique_ptr<Authorization>& real) : real_(real) {}
    std::unique_ptr<Authorization> create() override { return std::make_unique<NoRefresh>(*real_); }

  private:
    const std::unique_ptr<Authorization>& real_;
};

/// A target volume that belongs to root, and a bundle that carries F.plugin and Layers.jsx.
class OperationsThroughTheHelper : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: the helper must run as root";
        ASSERT_EQ(::chmod(volume.path().c_str(), 0755), 0);
        fake.bundle.folder = volume / "Sample Installer.app";
        volume.add("Sample Installer.app/Contents/SharedSupport/PlugIn/F.plugin", "payload");
        volume.add("Sample Installer.app/Contents/SharedSupport/AutoLayer/Layers.jsx", "payload");
        volume.add("Library/Application Support/Acme/other", "kept");
        volume.add("Plug-Ins/neighbour", "kept");
        fake.searchPaths.volume = volume.path();
        fake.searchPaths.login = "nobody";
    }

    /// As pkexec does it: as root, with the number of the user who asked.
    void startHelper(const WriteGrant& grant) {
        volume.add("pkexec",
                   "#!/bin/sh\nshift\nPKEXEC_UID=" + std::to_string(nobody) + " exec \"$@\"\n");
        ASSERT_EQ(::chmod((volume / "pkexec").c_str(), 0755), 0);
        AdministratorAccess access;
        access.helper.path = PRIVILEGED_HELPER;
        access.announce = [](std::string_view) {};
        access.means = [this] {
            AdministratorMeans means;
            means.pkexec = volume / "pkexec";
            means.hasSystemBus = true;
            return means;
        };
        authorization = LinuxAuthorizations(access).create();
        ASSERT_TRUE(authorization->obtain(Authorization::extendRights));
        authorization->limitTo(grant);
        const auto launch = authorization->execute("/usr/bin/touch", {volume / "not planned"});
        ASSERT_EQ(launch.status, 0);
        launch.tool->waitUntilEnded();
        ASSERT_FALSE(volume.holds("not planned"));
    }

    /// Calls what a maker's run would call, as an ordinary user and with the run's authorization.
    /// `plan` adds to what the run may change.
    template <class Plan, class Call>
    void inARun(Plan plan, Call call) {
        LinuxFileManager files(fake.log);
        LinuxFileQueries queries(loop);
        StartedAuthorizations authorizations(authorization);
        Platform platform{files,
                          queries,
                          authorizations,
                          fake.processes,
                          loop,
                          fake.preferences,
                          fake.bundle,
                          fake.bundles,
                          fake.searchPaths,
                          fake.applications,
                          fake.alerts,
                          fake.log,
                          fake.clock,
                          fake.notifications};
        WriteGrant grant = plannedWrites(platform, makeInstallPlan(platform, {}));
        plan(grant, platform);
        startHelper(grant);
        const OrdinaryUser user;
        InstallFilesController controller(platform);
        controller.install({}, false);
        fake.log.lines.clear();
        call(controller, platform);
        EXPECT_FALSE(controller.authDenied());
        EXPECT_FALSE(controller.fileOpErrorOccurred());
    }
    void unInstall(const std::string& plugInPath) {
        inARun(
            [&](WriteGrant& grant, Platform& platform) {
                addEarlierCopies(platform, UnknownHostModel(platform, plugInPath), grant);
            },
            [&](InstallFilesController& controller, Platform& platform) {
                controller.unInstallForHost(UnknownHostModel(platform, plugInPath));
            });
    }
    void writeIdentifier() {
        inARun([](WriteGrant&, Platform&) {}, [](InstallFilesController& controller,
                                                 Platform&) { controller.installAnalytics(); });
    }

    [[nodiscard]] std::string contents(const std::string& name) const {
        std::ifstream file(volume / name, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
    [[nodiscard]] std::string foundLine(const std::string& name) const {
        return "found " + name.substr(name.rfind('/') + 1) + " at " + (volume / name);
    }

    ScratchFolder volume;
    FakePlatform fake;
    PollEventLoop loop;
    std::unique_ptr<Authorization> authorization;
    const std::string identifier = "Library/Application Support/Acme/entityresolver.guid";
};

TEST_F(OperationsThroughTheHelper, EarlierCopiesGoAtEveryDepthAndTheirNeighboursStay) {
    const std::vector<std::string> copies = {
        "Plug-Ins/F.plugin", "Plug-Ins/Filters 1/F.plugin", "Plug-Ins/.old/F.plugin",
        "Plug-Ins/Filters 1/Old.plugin/Contents/Layers.jsx", "Plug-Ins/Layers.jsx"};
    const std::vector<std::string> neighbours = {
        "Plug-Ins/f.plugin",
        "Plug-Ins/F.plugin 2",
        "Plug-Ins/Filters 1/My F.plugin",
        "Plug-Ins/Filters 1/Old.plugin/Contents/Layers.jsx.bak",
        "Plug-Ins/neighbour",
        "Scripts/Layers.jsx",
        "F.plugin"};
    for (const std::string& copy : copies) volume.add(copy, "old");
    for (const std::string& neighbour : neighbours) volume.add(neighbour, "kept");
    unInstall(volume / "Plug-Ins");
    for (const std::string& copy : copies) EXPECT_FALSE(volume.holds(copy)) << copy;
    for (const std::string& neighbour : neighbours) EXPECT_EQ(contents(neighbour), "kept");
    std::vector<std::string> lines;
    for (const std::string& copy : copies) lines.push_back(foundLine(copy));
    EXPECT_THAT(fake.log.lines, testing::UnorderedElementsAreArray(lines));
}

TEST_F(OperationsThroughTheHelper, AnEarlierCopyGoesWithEverythingInItAnotherCopyToo) {
    volume.add("Plug-Ins/F.plugin/Contents/F.plugin/deep", "old");
    unInstall(volume / "Plug-Ins");
    EXPECT_FALSE(volume.holds("Plug-Ins/F.plugin"));
    EXPECT_THAT(fake.log.lines,
                UnorderedElementsAre(foundLine("Plug-Ins/F.plugin"),
                                     foundLine("Plug-Ins/F.plugin/Contents/F.plugin")));
}

TEST_F(OperationsThroughTheHelper, NoLinkLeadsTheRemovalOutOfTheFolder) {
    volume.add("elsewhere/F.plugin", "kept");
    volume.add("elsewhere/item/file", "kept");
    ASSERT_EQ(::symlink("../elsewhere", (volume / "Plug-Ins/link").c_str()), 0);
    ASSERT_EQ(::symlink("../elsewhere/item", (volume / "Plug-Ins/F.plugin").c_str()), 0);
    unInstall(volume / "Plug-Ins");
    EXPECT_FALSE(volume.holds("Plug-Ins/F.plugin"));
    EXPECT_EQ(contents("elsewhere/F.plugin"), "kept");
    EXPECT_EQ(contents("elsewhere/item/file"), "kept");
}

TEST_F(OperationsThroughTheHelper, AUsersLinkInPlaceOfTheFolderRemovesNothing) {
    volume.add("elsewhere/F.plugin", "kept");
    const std::string home = volume / "home";
    ASSERT_EQ(::mkdir(home.c_str(), 0755), 0);
    const std::string link = home + "/Plug-Ins";
    ASSERT_EQ(::symlink("../elsewhere", link.c_str()), 0);
    ASSERT_EQ(::lchown(link.c_str(), nobody, nobody), 0);
    ASSERT_EQ(::chown(home.c_str(), nobody, nobody), 0);
    unInstall(link);
    EXPECT_EQ(contents("elsewhere/F.plugin"), "kept");
    EXPECT_THAT(fake.log.lines,
                testing::ElementsAre("found F.plugin at " + home + "/Plug-Ins/F.plugin"));
}

TEST_F(OperationsThroughTheHelper, AnEmptyPathRemovesNothing) {
    volume.add("Plug-Ins/F.plugin", "kept");
    unInstall("");
    EXPECT_EQ(contents("Plug-Ins/F.plugin"), "kept");
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

TEST_F(OperationsThroughTheHelper, TheIdentifierIsTheUsersAndTheAdministrators) {
    writeIdentifier();
    EXPECT_THAT(contents(identifier),
                MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\n"));
    struct stat status{};
    ASSERT_EQ(::lstat((volume / identifier).c_str(), &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode));
    EXPECT_EQ(status.st_mode & 07777U, 0664U);
    EXPECT_EQ(status.st_uid, nobody);
    EXPECT_EQ(status.st_gid, administratorsGroup());
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

TEST_F(OperationsThroughTheHelper, TheIdentifierIsKeptASecondTime) {
    writeIdentifier();
    const std::string first = contents(identifier);
    ASSERT_EQ(first.size(), 37U);
    writeIdentifier();
    EXPECT_EQ(contents(identifier), first);
}

TEST_F(OperationsThroughTheHelper, ALinkInPlaceOfTheIdentifierIsLeftAlone) {
    volume.add("precious", "kept");
    ASSERT_EQ(::symlink((volume / "precious").c_str(), (volume / identifier).c_str()), 0);
    writeIdentifier();
    EXPECT_EQ(contents("precious"), "kept");
    struct stat status{};
    ASSERT_EQ(::stat((volume / "precious").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 0U);
}

TEST_F(OperationsThroughTheHelper, WithoutTheMakersFolderThereIsNoIdentifier) {
    fake.bundle.tables["installer"]["company_name"] = "Nobody";
    writeIdentifier();
    EXPECT_FALSE(volume.holds("Library/Application Support/Nobody"));
    EXPECT_THAT(fake.log.lines, testing::ElementsAre("can't open guid file handle"));
}

}  // namespace
}  // namespace installer::test
