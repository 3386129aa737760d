#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/Wizard.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string payload = "/Installer.app/Contents/Resources/files";
const std::string logFile = "/Library/Application Support/Acme/Filters 2 Installer.log";

class FailureReportTest : public WizardTest {
  protected:
    FailureReportTest() {
        fake.bundle.tables["Localizable"]["rights_refused"] = "No rights";
        fake.bundle.tables["Localizable"]["success_picture_name"] = "Succeeded";
        fake.bundle.tables["Localizable"]["failure_picture_name"] = "Failed";
        fake.bundle.resources["checkmark.png"] = "/checkmark.png";
        fake.bundle.resources["Installer_Error.png"] = "/error.png";
        addPhotoshop("Adobe Photoshop CS6");
        fake.memory.addFile(payload + "/HD/Library/Application Support/Acme/Filters 2/a.txt");
    }

    /// Goes through the whole wizard up to the last page.
    void install() {
        start();
        goTo(2);
        ASSERT_THAT(highlighted(), ElementsAre(4));
    }

    void addItemThatCannotBeCopied(const std::string& path) {
        fake.memory.addOther(payload + "/HD" + path + "/pipe");
    }

    std::string explanation() { return valueOf<StyledText>("informativeText").plainText(); }
    std::vector<ListRow> failedItems() { return valueOf<std::vector<ListRow>>("failedItems"); }
};

TEST_F(FailureReportTest, ASuccessfulInstallationHasNothingToReport) {
    install();
    EXPECT_TRUE(flagOf("successfulInstall"));
    EXPECT_FALSE(flagOf("installationFailed"));
    EXPECT_FALSE(flagOf("hasFailedItems"));
    EXPECT_THAT(failedItems(), IsEmpty());
    EXPECT_EQ(textOf("failureReason"), "");
    EXPECT_EQ(valueOf<Image>("backgroundImage"), Image{"/checkmark.png"});
    EXPECT_EQ(textOf("backgroundImageName"), "Succeeded");
    EXPECT_TRUE(flagOf("installerLogExists"));
}

TEST_F(FailureReportTest, BeforeTheInstallationNothingHasFailed) {
    start();
    EXPECT_FALSE(flagOf("successfulInstall"));
    EXPECT_FALSE(flagOf("installationFailed"));
    EXPECT_FALSE(flagOf("installerLogExists"));
    EXPECT_EQ(textOf("failureReason"), "");
    EXPECT_EQ(textOf("backgroundImageName"), "");
}

TEST_F(FailureReportTest, ItemsThatFailedAreListedByNameAndFolder) {
    addItemThatCannotBeCopied("/Applications/Tool.app");
    install();
    EXPECT_FALSE(flagOf("successfulInstall"));
    EXPECT_TRUE(flagOf("installationFailed"));
    EXPECT_TRUE(flagOf("hasFailedItems"));
    EXPECT_THAT(failedItems(),
                ElementsAre(ListRow{.title = "Tool.app", .detail = "/Applications"}));
    EXPECT_EQ(textOf("failureReason"), "");
}

TEST_F(FailureReportTest, TheLastPageOfAFailedInstallationSaysWhomToAsk) {
    addItemThatCannotBeCopied("/Applications/Tool.app");
    install();
    EXPECT_EQ(explanation(), "Ask Acme");
    EXPECT_EQ(valueOf<Image>("backgroundImage"), Image{"/error.png"});
    EXPECT_EQ(textOf("backgroundImageName"), "Failed");
}

TEST_F(FailureReportTest, RefusedRightsAreTheReason) {
    fake.authorizations.status = [](const auto&) { return authorization_status::denied; };
    install();
    EXPECT_TRUE(flagOf("installationFailed"));
    EXPECT_EQ(textOf("failureReason"), "No rights");
    EXPECT_EQ(explanation(), "Ask Acme");
}

TEST_F(FailureReportTest, ANewRunForgetsTheFailuresOfTheOneBefore) {
    addItemThatCannotBeCopied("/Applications/Tool.app");
    install();
    ASSERT_TRUE(flagOf("hasFailedItems"));
    ASSERT_FALSE(fake.memory.remove(payload + "/HD/Applications/Tool.app/pipe"));
    wizard->previousView(nullptr);
    ASSERT_THAT(visibleViews(), ElementsAre("hostsView"));
    EXPECT_FALSE(flagOf("installationFailed"));
    wizard->nextView(nullptr);
    ASSERT_THAT(highlighted(), ElementsAre(4));
    EXPECT_THAT(failedItems(), IsEmpty());
    EXPECT_TRUE(flagOf("successfulInstall"));
    EXPECT_EQ(textOf("backgroundImageName"), "Succeeded");
}

TEST_F(FailureReportTest, TheLogIsOpenedByTheDesktop) {
    install();
    wizard->performAction("openInstallerLog", nullptr);
    EXPECT_THAT(fake.workspace.opened, ElementsAre(logFile));
}

TEST_F(FailureReportTest, TheLogsTextIsPutOnTheClipboard) {
    install();
    wizard->performAction("copyInstallerLog", nullptr);
    EXPECT_EQ(fake.clipboard.text, fake.memory.contents(logFile));
    EXPECT_THAT(fake.clipboard.text, HasSubstr("Filters 2/a.txt"));
}

TEST_F(FailureReportTest, ALogThatCannotBeReadLeavesTheClipboardAlone) {
    start();
    fake.clipboard.text = "mine";
    wizard->performAction("copyInstallerLog", nullptr);
    EXPECT_EQ(fake.clipboard.text, "mine");
}

}  // namespace
}  // namespace installer::test
