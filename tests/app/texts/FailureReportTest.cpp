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
using testing::Not;
using testing::StartsWith;

const std::string payload = "/Installer.app/Contents/Resources/files";
const std::string logFile = "/Library/Application Support/Acme/Filters 2 Installer.log";

class FailureReportTest : public WizardTest {
  protected:
    FailureReportTest() {
        fake.bundle.tables["Localizable"].insert({{"rights_refused", "No rights"},
                                                  {"auth_error", "Rights are needed."},
                                                  {"rights_no_way", "No polkit."},
                                                  {"rights_no_helper", "No helper."},
                                                  {"host_left_out_fmt", "%@: not installed"},
                                                  {"failed_item_fmt", "%1$@ (%2$@)"},
                                                  {"system_folder", "of the system"}});
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
    ASSERT_THAT(failedItems(), Not(IsEmpty()));
    EXPECT_EQ(failedItems().front().title, "Tool.app");
    EXPECT_THAT(failedItems().front().detail, StartsWith("/Applications"));
    EXPECT_EQ(textOf("failureReason"), "");
}

TEST_F(FailureReportTest, AFailedItemHasItsReason) {
    addItemThatCannotBeCopied("/Applications/Tool.app");
    install();
    const std::string error =
        fake.memory.copy(payload + "/HD/Applications/Tool.app", "/copy", nullptr).message();
    ASSERT_THAT(failedItems(), Not(IsEmpty()));
    EXPECT_EQ(failedItems().front().detail, "/Applications (" + error + ")");
}

TEST_F(FailureReportTest, TheReasonIsInThePersonsLanguageAndInTheSystemsWordsForSupport) {
    fake.bundle.tables["Localizable"]["reason_read_only"] = "schreibgeschützt";
    const std::error_code error = std::make_error_code(std::errc::read_only_file_system);
    fake.files.setFault([&](const RecordingFileManager::Operation& operation) {
        return operation.front() == "copy" ? error : std::error_code();
    });
    fake.authorizations.works = [](const auto& command) { return command.front() != "/bin/cp"; };
    install();
    ASSERT_THAT(failedItems(), Not(IsEmpty()));
    EXPECT_THAT(failedItems().front().detail, testing::EndsWith(" (schreibgeschützt)"));
    wizard->performAction("copyReport", nullptr);
    EXPECT_THAT(fake.clipboard.text, HasSubstr("a.txt (" + error.message() + ")"));
}

TEST_F(FailureReportTest, AnItemForAFolderOfTheSystemSaysSo) {
    fake.memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/f");
    fake.memory.addFile("/Users/tester/Library/Preferences/Adobe Photoshop CS6 Paths",
                        std::string("/Applications/Adobe Photoshop CS6\0/usr/lib/x\0", 45));
    install();
    ASSERT_THAT(failedItems(), Not(IsEmpty()));
    EXPECT_EQ(failedItems().front().title, "F.plugin");
    EXPECT_EQ(failedItems().front().detail, "/usr/lib/x (of the system)");
}

TEST_F(FailureReportTest, EachHostThatWasLeftOutHasARow) {
    addPhotoshop("Adobe Photoshop CC");
    addItemThatCannotBeCopied("/Applications/Tool.app");
    install();
    EXPECT_THAT(failedItems(), ElementsAre(testing::Field(&ListRow::title, "Tool.app"),
                                           ListRow{.title = "Adobe Photoshop CC: not installed",
                                                   .detail = "/Applications/Adobe Photoshop CC"},
                                           ListRow{.title = "Adobe Photoshop CS6: not installed",
                                                   .detail = "/Applications/Adobe Photoshop CS6"}));
}

TEST_F(FailureReportTest, AHostWhoseOwnItemFailedIsNotCalledLeftOut) {
    addPhotoshop("Adobe Photoshop CC");
    fake.memory.addOther(payload + "/PHOTOSHOP/Panel.plugin/pipe");
    install();
    ASSERT_EQ(failedItems().size(), 2U);
    EXPECT_EQ(failedItems()[0].title, "Panel.plugin");
    EXPECT_EQ(failedItems()[1].title, "Adobe Photoshop CS6: not installed");
}

TEST_F(FailureReportTest, RightsThatNobodyCanGiveAreTheReason) {
    fake.authorizations.obtainable = false;
    fake.authorizations.trouble = AuthorizationTrouble::noWay;
    install();
    EXPECT_EQ(textOf("failureReason"), "Rights are needed. No polkit.");
    EXPECT_EQ(failedItems().size(), 1U) << "the host that got nothing";
}

TEST_F(FailureReportTest, ADamagedInstallerIsTheReasonThatThereAreNoRights) {
    fake.authorizations.obtainable = false;
    fake.authorizations.trouble = AuthorizationTrouble::helperUnusable;
    install();
    EXPECT_EQ(textOf("failureReason"), "Rights are needed. No helper.");
}

TEST_F(FailureReportTest, TheReasonForMissingRightsIsForgottenByTheNextRun) {
    fake.authorizations.obtainable = false;
    fake.authorizations.trouble = AuthorizationTrouble::noWay;
    install();
    fake.authorizations.obtainable = true;
    wizard->previousView(nullptr);
    wizard->nextView(nullptr);
    ASSERT_THAT(highlighted(), ElementsAre(4));
    EXPECT_EQ(textOf("failureReason"), "");
    EXPECT_THAT(failedItems(), IsEmpty());
}

TEST_F(FailureReportTest, TheListOfAnEarlierRunIsNotOffered) {
    fake.memory.addFolder("/Library/Application Support/Acme");
    fake.memory.addFile(logFile, "/an/earlier/item\n");
    fake.authorizations.obtainable = false;
    install();
    ASSERT_TRUE(fake.memory.exists(logFile));
    EXPECT_FALSE(flagOf("installerLogExists"));
    fake.clipboard.text = "mine";
    wizard->performAction("copyInstallerLog", nullptr);
    wizard->performAction("openInstallerLog", nullptr);
    EXPECT_EQ(fake.clipboard.text, "mine");
    EXPECT_THAT(fake.workspace.opened, IsEmpty());
}

TEST_F(FailureReportTest, TheReportHoldsWhatSupportNeeds) {
    fake.bundle.information["CFBundleShortVersionString"] = "2.1";
    addItemThatCannotBeCopied("/Applications/Tool.app");
    install();
    const std::string error =
        fake.memory.copy(payload + "/HD/Applications/Tool.app", "/copy", nullptr).message();
    wizard->performAction("copyReport", nullptr);
    EXPECT_EQ(fake.clipboard.text,
              "Product: Filters 2 (Acme)\n"
              "Version: 2.1\n"
              "System: Testix 1\n"
              "Outcome: not complete, 1 items installed\n"
              "Failed: /Applications/Tool.app (" +
                  error +
                  ")\n"
                  "Left out: Adobe Photoshop CS6 (/Applications/Adobe Photoshop CS6)\n");
}

TEST_F(FailureReportTest, TheReportNamesTheTroubleWithRights) {
    fake.authorizations.status = [](const auto&) { return authorization_status::denied; };
    install();
    wizard->performAction("copyReport", nullptr);
    EXPECT_THAT(fake.clipboard.text, HasSubstr("Reason: No rights\n"));
}

// What a press of a button shows

TEST_F(FailureReportTest, ALogThatNothingOpensIsNamed) {
    fake.bundle.tables["Localizable"].insert(
        {{"could_not_open_title", "No"}, {"could_not_open_message", "Open %@"}});
    fake.workspace.canOpen = false;
    install();
    wizard->performAction("openInstallerLog", nullptr);
    ASSERT_EQ(fake.alerts.shown.size(), 2U) << "the licence's question, then this";
    EXPECT_EQ(fake.alerts.shown.back().title, "No");
    EXPECT_EQ(fake.alerts.shown.back().message, "Open " + logFile);
}

TEST_F(FailureReportTest, APageThatNothingOpensIsNamed) {
    fake.bundle.tables["Localizable"].insert({{"could_not_open_title", "No"},
                                              {"could_not_open_message", "Open %@"},
                                              {"register_url", "https://acme.example"}});
    fake.workspace.canOpen = false;
    install();
    wizard->performAction("subViewButtonPress", nullptr);
    ASSERT_EQ(fake.alerts.shown.size(), 2U);
    EXPECT_EQ(fake.alerts.shown.back().message, "Open https://acme.example");
}

TEST_F(FailureReportTest, APageWhoseBrowserFailsIsNamed) {
    fake.bundle.tables["Localizable"].insert({{"could_not_open_title", "No"},
                                              {"could_not_open_message", "Open %@"},
                                              {"register_url", "https://acme.example"}});
    install();
    wizard->performAction("subViewButtonPress", nullptr);
    ASSERT_EQ(fake.alerts.shown.size(), 1U) << "the licence's question";
    fake.workspace.failToOpen("https://acme.example");
    ASSERT_EQ(fake.alerts.shown.size(), 2U);
    EXPECT_EQ(fake.alerts.shown.back().message, "Open https://acme.example");
}

TEST_F(FailureReportTest, ACopyIsConfirmedUntilThePageIsLeft) {
    fake.bundle.tables["Localizable"]["copied"] = "Copied";
    addItemThatCannotBeCopied("/Applications/Tool.app");
    install();
    EXPECT_EQ(textOf("copiedNote"), "");
    recordRefreshes();
    wizard->performAction("copyReport", nullptr);
    EXPECT_THAT(refreshed, testing::Contains("copiedNote"));
    EXPECT_EQ(textOf("copiedNote"), "Copied");
    wizard->previousView(nullptr);
    EXPECT_EQ(textOf("copiedNote"), "");
    wizard->nextView(nullptr);
    wizard->performAction("copyInstallerLog", nullptr);
    EXPECT_EQ(textOf("copiedNote"), "Copied");
}

TEST_F(FailureReportTest, ACopyOfNothingIsNotConfirmed) {
    fake.bundle.tables["Localizable"]["copied"] = "Copied";
    start();
    wizard->performAction("copyInstallerLog", nullptr);
    EXPECT_EQ(textOf("copiedNote"), "");
}

// What went into a Photoshop

TEST_F(FailureReportTest, APluginThatWentIntoNoPhotoshopIsNotPraised) {
    fake.memory.addFile(payload + "/PHOTOSHOP/run.jsx");
    fake.bundle.tables["Localizable"]["no_photoshop_used"] = "Into no Photoshop";
    start();
    goTo(1);
    wizard->setRowChecked("foundHosts", 0, false);
    goTo(1);
    ASSERT_THAT(highlighted(), ElementsAre(4));
    EXPECT_TRUE(flagOf("successfulInstall"));
    EXPECT_EQ(textOf("noPhotoshopText"), "Into no Photoshop");
    EXPECT_FALSE(flagOf("showsOutcomeText"));
}

TEST_F(FailureReportTest, APluginThatWentIntoAPhotoshopIsSaidToBeThere) {
    fake.memory.addFile(payload + "/PHOTOSHOP/run.jsx");
    fake.bundle.tables["Localizable"]["no_photoshop_used"] = "Into no Photoshop";
    install();
    EXPECT_EQ(textOf("noPhotoshopText"), "");
    EXPECT_TRUE(flagOf("showsOutcomeText"));
    EXPECT_EQ(valueOf<std::vector<ListRow>>("installedPlaces").size(), 1U);
}

TEST_F(FailureReportTest, AHostForWhichThereIsNothingIsNoPlaceOfThePlugin) {
    fake.bundle.tables["Localizable"]["no_photoshop_used"] = "Into no Photoshop";
    install();
    EXPECT_EQ(textOf("noPhotoshopText"), "Into no Photoshop");
    EXPECT_THAT(valueOf<std::vector<ListRow>>("installedPlaces"), IsEmpty());
}

TEST_F(FailureReportTest, AFailedRunShowsTheFailureAndNothingElse) {
    fake.bundle.tables["Localizable"]["no_photoshop_used"] = "Into no Photoshop";
    addItemThatCannotBeCopied("/Applications/Tool.app");
    install();
    EXPECT_EQ(textOf("noPhotoshopText"), "");
    EXPECT_TRUE(flagOf("showsOutcomeText"));
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
