#include <algorithm>
#include <string>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>

#include "app/QuietInstallation.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

class QuietInstallation : public testing::Test {
  protected:
    QuietInstallation() {
        fake_.memory.addFile(payload_ + "/PHOTOSHOP/run.jsx");
        fake_.memory.addFile(payload_ + "/HD/Library/Application Support/Acme/Filters 2/a.txt");
        addPhotoshop("Adobe Photoshop CS6");
    }

    void addPhotoshop(const std::string& name) {
        const std::string folder = "/Applications/" + name;
        fake_.memory.addFolder(folder + "/Photoshop.app");
        fake_.memory.addFile("/Users/tester/Library/Preferences/" + name + " Paths",
                             folder + std::string(1, '\0'));
    }

    FakePlatform fake_;
    std::string payload_ = "/Installer.app/Contents/Resources/files";
};

TEST_F(QuietInstallation, InstallsIntoEveryHostThatIsFound) {
    addPhotoshop("Adobe Photoshop CC 2015");
    installQuietly(fake_.platform);
    EXPECT_TRUE(fake_.memory.exists("/Applications/Adobe Photoshop CS6/run.jsx"));
    EXPECT_TRUE(fake_.memory.exists("/Applications/Adobe Photoshop CC 2015/run.jsx"));
}

TEST_F(QuietInstallation, MakesTheInstallationBeforeItSearchesForHosts) {
    std::vector<std::string> made;
    fake_.searchPaths.whenLoginNameIsAsked = [&] { made.emplace_back("installation"); };
    fake_.files.setFault([&](const RecordingFileManager::Operation& operation) {
        if (operation.front() == "read" && operation[1].ends_with(" Paths")) {
            made.emplace_back("hosts");
        }
        return std::error_code();
    });
    installQuietly(fake_.platform);
    EXPECT_THAT(made, ElementsAre("installation", "hosts"));
}

TEST_F(QuietInstallation, ListsTheSiblingEditorsButNoPhotoshopSinceNoWindowKeepsAList) {
    fake_.memory.addFolder("/Applications/Quarrytone Inkvale 4.app");
    installQuietly(fake_.platform);
    EXPECT_EQ(
        fake_.memory.contents("/Library/Application Support/Acme/Prismor X/ExternalEditors.csv"),
        "/Applications/Quarrytone Inkvale 4.app,Inkvale 4,4,2,1003,100,ORIGINAL, \n");
}

TEST_F(QuietInstallation, SaysThatItIsCompleteAndWhereTheListIs) {
    installQuietly(fake_.platform);
    EXPECT_THAT(fake_.log.lines,
                Contains("The installation is complete (2 items installed, listed in "
                         "/Library/Application Support/Acme/Filters 2 Installer.log)"));
}

TEST_F(QuietInstallation, NamesNoListThatCouldNotBeWritten) {
    fake_.memory.addFolder("/Library/Application Support/Acme/Filters 2 Installer.log");
    fake_.authorizations.works = [](const auto& command) { return command.front() != "/bin/rm"; };
    installQuietly(fake_.platform);
    EXPECT_THAT(fake_.log.lines, Contains("The installation is complete (2 items installed)"));
}

TEST_F(QuietInstallation, NamesAHostBehindALinkThatIsNotFollowedBeforeItTriesIt) {
    fake_.authorizations.linkRefusals["/Applications/Adobe Photoshop CS6"] =
        LinkRefusal::ofAnotherUser;
    installQuietly(fake_.platform);
    const std::string line =
        "Adobe Photoshop CS6: its folder is reached through a link of another user, which is not "
        "followed";
    const auto said = std::ranges::find(fake_.log.lines, line);
    ASSERT_NE(said, fake_.log.lines.end());
    EXPECT_THAT(std::vector(fake_.log.lines.begin(), said), testing::Not(Contains("run.jsx")));
    EXPECT_TRUE(fake_.memory.exists("/Applications/Adobe Photoshop CS6/run.jsx"));
}

TEST_F(QuietInstallation, SaysThatItIsNotCompleteWhenAnItemFailed) {
    fake_.memory.addOther(payload_ + "/HD/Applications/Tool.app/pipe");
    installQuietly(fake_.platform);
    EXPECT_THAT(fake_.log.lines, Contains("The installation is not complete (1 items installed)"));
    EXPECT_FALSE(fake_.memory.exists("/Applications/Adobe Photoshop CS6/run.jsx"));
}

TEST_F(QuietInstallation, SaysThatRightsWereRefused) {
    fake_.authorizations.status = [](const auto&) { return authorization_status::denied; };
    installQuietly(fake_.platform);
    EXPECT_THAT(fake_.log.lines, Contains(HasSubstr("Administrator rights were refused or lost")));
    EXPECT_FALSE(fake_.memory.exists("/Applications/Adobe Photoshop CS6/run.jsx"));
}

TEST_F(QuietInstallation, SaysThatRightsCannotBeHadAndWhy) {
    fake_.authorizations.obtainable = false;
    fake_.authorizations.trouble = AuthorizationTrouble::helperUnusable;
    installQuietly(fake_.platform);
    ASSERT_FALSE(fake_.log.lines.empty());
    EXPECT_EQ(fake_.log.lines.back(),
              "Nothing was installed: administrator rights cannot be had, because the privileged "
              "helper is missing or cannot be started");
}

TEST_F(QuietInstallation, SaysThatNothingHereAsksForRights) {
    fake_.authorizations.obtainable = false;
    fake_.authorizations.trouble = AuthorizationTrouble::noWay;
    installQuietly(fake_.platform);
    ASSERT_FALSE(fake_.log.lines.empty());
    EXPECT_EQ(fake_.log.lines.back(),
              "Nothing was installed: administrator rights cannot be had, because there is neither "
              "polkit nor sudo");
}

TEST_F(QuietInstallation, SaysThatNoPhotoshopGotThePlugin) {
    ASSERT_FALSE(fake_.memory.remove("/Applications/Adobe Photoshop CS6/Photoshop.app"));
    installQuietly(fake_.platform);
    ASSERT_FALSE(fake_.log.lines.empty());
    EXPECT_EQ(fake_.log.lines.back(),
              "The installation is complete (1 items installed, listed in "
              "/Library/Application Support/Acme/Filters 2 Installer.log). The plug-in was put "
              "into no Photoshop");
}

TEST_F(QuietInstallation, NamesTheHostsThatWereLeftOut) {
    fake_.memory.addOther(payload_ + "/HD/Applications/Tool.app/pipe");
    installQuietly(fake_.platform);
    EXPECT_THAT(fake_.log.lines, Contains("Adobe Photoshop CS6: not installed"));
}

TEST_F(QuietInstallation, TellsThatTheApplicationEndsWhenAllIsDone) {
    std::size_t linesBefore = 0;
    const auto subscription = fake_.notifications.observe(
        applicationWillTerminate,
        [&](const Notification&) { linesBefore = fake_.log.lines.size(); });
    installQuietly(fake_.platform);
    EXPECT_EQ(linesBefore, fake_.log.lines.size());
}

TEST_F(QuietInstallation, AsksForOneAuthorizationOnly) {
    installQuietly(fake_.platform);
    EXPECT_EQ(fake_.authorizations.created, 1);
    EXPECT_THAT(fake_.authorizations.obtainedFlags, ElementsAre(Authorization::extendRights));
}

}  // namespace
}  // namespace installer::test
