#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/Wizard.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::pair<std::string, std::string> launchHelp = {"com.quarrytone.installer",
                                                        "launch_help_url"};

class SetupControllerOptionsTest : public WizardTest {
  protected:
    void expectStored(bool value) {
        ASSERT_TRUE(fake.preferences.values.contains(launchHelp));
        EXPECT_EQ(fake.preferences.values[launchHelp], PreferenceValue(value));
    }
};

TEST_F(SetupControllerOptionsTest, TheHelpPageIsWantedUnlessTheUserSaysOtherwise) {
    start();
    EXPECT_TRUE(flagOf("launchHelpURL"));
    expectStored(true);
}

TEST_F(SetupControllerOptionsTest, AHelpPageThatIsNotWantedStaysUnwantedAndIsWrittenBack) {
    fake.preferences.values[launchHelp] = false;
    start();
    EXPECT_FALSE(flagOf("launchHelpURL"));
    expectStored(false);
    scriptSteps();
    goTo(5);
    EXPECT_THAT(fake.workspace.opened, IsEmpty());
}

TEST_F(SetupControllerOptionsTest, ASettingOfAnotherTypeIsWrittenBackAsATruth) {
    fake.preferences.values[launchHelp] = std::string("NO");
    start();
    expectStored(false);
}

TEST_F(SetupControllerOptionsTest, TheUsersChoiceOfTheHelpPageIsWrittenAtOnceButNotToTheDisk) {
    start();
    wizard->setValueForProperty("launchHelpURL", false);
    EXPECT_FALSE(flagOf("launchHelpURL"));
    expectStored(false);
    wizard->setValueForProperty("launchHelpURL", true);
    expectStored(true);
    EXPECT_THAT(fake.preferences.synchronized, IsEmpty());
}

TEST_F(SetupControllerOptionsTest, TheSwitchOfTheHelpPageShowsWhatWasReadAtTheStart) {
    make();
    recordRefreshes();
    wizard->awakeFromNib(fake.interfaces.load("MainWindow", *wizard));
    EXPECT_THAT(refreshed, testing::Contains("launchHelpURL"));
}

TEST_F(SetupControllerOptionsTest, SettingAnOptionAnnouncesNothingAndStoresNothing) {
    start();
    const auto stored = fake.preferences.values;
    recordAnnouncements();
    wizard->setIsCustomInstallAllowed(true);
    wizard->setIsCustomInstallChosen(true);
    wizard->setCanConfigurePrismorExternalEditors(true);
    wizard->setShouldConfigurePrismorExternalEditors(true);
    wizard->setCustomInstallRecommended(false);
    wizard->setLaunchHelpURL(true);
    EXPECT_THAT(events, IsEmpty());
    EXPECT_EQ(fake.preferences.values, stored);
    EXPECT_TRUE(wizard->isCustomInstallAllowed());
    EXPECT_TRUE(wizard->isCustomInstallChosen());
    EXPECT_TRUE(wizard->canConfigurePrismorExternalEditors());
    EXPECT_TRUE(wizard->shouldConfigurePrismorExternalEditors());
    EXPECT_FALSE(wizard->customInstallRecommended());
}

TEST_F(SetupControllerOptionsTest, TheWindowSeesTheOptions) {
    start();
    EXPECT_FALSE(flagOf("canConfigurePrismorExternalEditors"));
    wizard->setCanConfigurePrismorExternalEditors(true);
    EXPECT_TRUE(flagOf("canConfigurePrismorExternalEditors"));
    EXPECT_FALSE(flagOf("shouldConfigurePrismorExternalEditors"));
    wizard->setValueForProperty("shouldConfigurePrismorExternalEditors", true);
    EXPECT_TRUE(wizard->shouldConfigurePrismorExternalEditors());
    EXPECT_TRUE(flagOf("shouldConfigurePrismorExternalEditors"));
}

TEST_F(SetupControllerOptionsTest, TheWindowCannotSetWhatItOnlyShows) {
    start();
    wizard->setValueForProperty("canConfigurePrismorExternalEditors", true);
    wizard->setValueForProperty("isCustomInstallAllowed", true);
    wizard->setValueForProperty("enableForward", false);
    EXPECT_FALSE(wizard->canConfigurePrismorExternalEditors());
    EXPECT_FALSE(wizard->isCustomInstallAllowed());
    EXPECT_TRUE(wizard->enableForward());
}

TEST_F(SetupControllerOptionsTest, TheMenuAllowsTheCustomInstallForGood) {
    start();
    recordRefreshes();
    wizard->performAction("customInstallMenu", nullptr);
    EXPECT_TRUE(flagOf("isCustomInstallAllowed"));
    EXPECT_THAT(refreshed, ElementsAre("isCustomInstallAllowed", "allowsCustomInstall",
                                       "canAllowCustomInstall"));
    wizard->performAction("customInstallMenu", nullptr);
    EXPECT_TRUE(wizard->isCustomInstallAllowed());
}

TEST_F(SetupControllerOptionsTest, TheEditorsAreListedWhenTheUserWantsThat) {
    addPhotoshop("Adobe Photoshop CC 2019");
    start();
    wizard->setValueForProperty("shouldConfigurePrismorExternalEditors", true);
    goTo(2);
    EXPECT_TRUE(
        fake.memory.exists("/Library/Application Support/Acme/Prismor X/ExternalEditors.csv"));
}

// The menus.

TEST_F(SetupControllerOptionsTest, QuittingClosesTheWindowAndOpensNoPage) {
    start();
    wizard->performAction("quit", nullptr);
    EXPECT_EQ(timesClosed(), 1);
    EXPECT_THAT(fake.workspace.opened, IsEmpty());
}

TEST_F(SetupControllerOptionsTest, HidingPutsTheWindowAway) {
    start();
    wizard->performAction("hideWindow", nullptr);
    EXPECT_EQ(window().windows["mainWindow"]->miniaturized, 1);
    EXPECT_EQ(timesClosed(), 0);
}

TEST_F(SetupControllerOptionsTest, TheAboutAlertNamesProductMakerAndVersion) {
    fake.bundle.tables["Localizable"]["about_menu_fmt"] = "About %@";
    fake.bundle.tables["Localizable"]["about_version_fmt"] = "Version %@";
    fake.bundle.tables["Localizable"]["ok_button"] = "OK";
    fake.bundle.information["CFBundleShortVersionString"] = "2.1";
    start();
    wizard->performAction("showAbout", nullptr);
    ASSERT_THAT(fake.alerts.shown, SizeIs(1));
    const Alert& alert = fake.alerts.shown.front();
    EXPECT_EQ(alert.identifier, "about");
    EXPECT_EQ(alert.style, Alert::Style::informational);
    EXPECT_EQ(alert.title, "About Filters 2");
    EXPECT_EQ(alert.message, "Filters 2\nAcme\nVersion 2.1");
    EXPECT_THAT(alert.buttons, ElementsAre("OK"));
}

TEST_F(SetupControllerOptionsTest, TheAboutAlertLeavesOutWhatIsNotKnown) {
    fake.bundle.tables["installer"].erase("company_name");
    start();
    wizard->performAction("showAbout", nullptr);
    EXPECT_EQ(fake.alerts.shown.front().message, "Filters 2");
}

TEST_F(SetupControllerOptionsTest, AnotherFolderOnceAllowedShowsItsTickAndCannotBeTakenBack) {
    start();
    EXPECT_FALSE(flagOf("allowsCustomInstall"));
    EXPECT_TRUE(flagOf("canAllowCustomInstall"));
    wizard->setValueForProperty("allowsCustomInstall", true);
    EXPECT_TRUE(wizard->isCustomInstallAllowed());
    EXPECT_TRUE(flagOf("allowsCustomInstall"));
    EXPECT_FALSE(flagOf("canAllowCustomInstall"));
    wizard->setValueForProperty("allowsCustomInstall", false);
    EXPECT_TRUE(flagOf("allowsCustomInstall"));
}

}  // namespace
}  // namespace installer::test
