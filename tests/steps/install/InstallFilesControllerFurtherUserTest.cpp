#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/HostModel.h"
#include "steps/install/InstallFilesController.h"
#include "tests/install/engine/EngineParts.h"

namespace installer::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const std::string applicationOfAll = "/Applications/Tool.app";
const std::string logOfAll = "/Library/Application Support/Acme/Filters 2 Installer.log";

std::string manifestOf(const std::string& login) {
    return "/Users/" + login + "/Library/Application Support/Acme/manifest.xml";
}

/// A machine of two users after the run for the first one, whose journal is forgotten.
class InstallFilesControllerFurtherUser : public testing::Test {
  protected:
    InstallFilesControllerFurtherUser() {
        addTexts(fake);
        memory.addFile(mirror + applicationOfAll + "/Contents/x");
        memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x");
        memory.addFolder("/Library/Application Support");
        memory.addFile(manifestOf("first"));
        memory.addFile(manifestOf("second"));
        become("first");
        firstRun.install({folderHost("/First")}, true);
        fake.journal.clear();
        become("second");
    }

    /// Makes the machine that user's, as the platform of each user is of its own.
    Platform& become(const std::string& login) {
        fake.searchPaths.login = login;
        fake.searchPaths.home = "/Users/" + login;
        return fake.platform;
    }

    HostModel folderHost(const std::string& folder) {
        return UnknownHostModel(fake.platform, folder);
    }

    void installForSecond(const std::vector<HostModel>& hosts) {
        controller.installForFurtherUser(hosts, firstRun.installedPaths());
    }

    FakePlatform fake;
    MemoryFileManager& memory = fake.memory;
    InstallFilesController firstRun{become("first")};
    InstallFilesController controller{become("second")};
};

TEST_F(InstallFilesControllerFurtherUser,
       GetsMenuEntryCleanManifestAndHostsAndNothingOfTheMachine) {
    installForSecond({folderHost("/Second")});
    EXPECT_THAT(
        operationsOf(fake),
        ElementsAre("register " + applicationOfAll, "remove " + manifestOf("second"),
                    "createFolders /Second 0775", "setAttributes /Second second:admin 0775",
                    "copy " + payload + "/PHOTOSHOP_PLUGINS/F.plugin /Second/F.plugin",
                    "/usr/sbin/chown -R second:admin /Second/F.plugin",
                    "/bin/chmod -R 0775 /Second/F.plugin", "/bin/rm -fR " + logOfAll,
                    "/usr/bin/touch " + logOfAll, "/usr/sbin/chown -R second:admin " + logOfAll,
                    "/usr/sbin/chmod -R 0644 " + logOfAll, "openForWriting " + logOfAll));
    EXPECT_FALSE(controller.fileOpErrorOccurred());
    EXPECT_THAT(fake.authorizations.unplanned, IsEmpty());
}

TEST_F(InstallFilesControllerFurtherUser, LogListsWhatTheRunsBeforeHaveInstalledFirst) {
    const std::string before = memory.contents(logOfAll);
    ASSERT_NE(before, "");
    installForSecond({folderHost("/Second")});
    EXPECT_EQ(memory.contents(logOfAll), before + "/Second/F.plugin\n");
    EXPECT_EQ(controller.installedPaths().size(), firstRun.installedPaths().size() + 1);
}

TEST_F(InstallFilesControllerFurtherUser, WithoutHostsStillGetsTheMenuEntryAndKeepsTheLog) {
    const std::string before = memory.contents(logOfAll);
    installForSecond({});
    EXPECT_THAT(operationsOf(fake), Contains("register " + applicationOfAll));
    EXPECT_EQ(memory.contents(logOfAll), before);
}

TEST_F(InstallFilesControllerFurtherUser,
       AFailedHostKeepsLaterOnesOutAndTheEarlierUsersItemsInTheLog) {
    const std::string before = memory.contents(logOfAll);
    fake.authorizations.works = [](const std::vector<std::string>& command) {
        return command.front() != "/bin/cp";
    };
    failOperation(fake, "copy");
    installForSecond({folderHost("/Second"), folderHost("/Third")});
    EXPECT_TRUE(controller.fileOpErrorOccurred());
    EXPECT_FALSE(memory.exists("/Third"));
    EXPECT_EQ(memory.contents(logOfAll), before);
    EXPECT_EQ(controller.installedPaths(), firstRun.installedPaths());
}

TEST_F(InstallFilesControllerFurtherUser, WithoutAWayToTheRightsNothingIsDoneAndTheFailureIsTold) {
    fake.authorizations.obtainable = false;
    installForSecond({folderHost("/Second")});
    EXPECT_TRUE(controller.authorizationFailed());
    EXPECT_THAT(operationsOf(fake), IsEmpty());
    EXPECT_TRUE(memory.exists(manifestOf("second")));
}

}  // namespace
}  // namespace installer::test
