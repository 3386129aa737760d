#include <memory>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/text/ShownLength.h"
#include "tests/app/Announcements.h"
#include "tests/app/Wizard.h"

namespace installer::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::UnorderedElementsAre;

class FailingModel : public ScriptedModel {
  public:
    std::optional<std::string> mainLabelText() const override {
        throw std::runtime_error("no text today");
    }
};

class ModelWithPicture : public ScriptedModel, public HasBackgroundImage {
  public:
    Image picture{"/picture"};
    Image backgroundImage() const override { return picture; }
};

class SetupControllerTextsTest : public WizardTest {
  protected:
    /// Starts the wizard and enters a step of the test's own with a model of that kind.
    template <class Model = ScriptedModel>
    std::shared_ptr<Model> enterStepWith() {
        start();
        auto model = std::make_shared<Model>();
        wizard->addStep(nullptr, std::make_shared<ScriptedStep>(1, events), model, 1);
        goTo(1);
        return model;
    }

    std::string plainTextOf(const char* property) {
        return valueOf<StyledText>(property).plainText();
    }

    void hasLicense(const std::string& text) {
        fake.bundle.resources["license.txt"] = "/license.txt";
        fake.memory.addFile("/license.txt", text);
    }
};

TEST_F(SetupControllerTextsTest, TheHeadingIsTheCurrentSteps) {
    const auto model = enterStepWith();
    EXPECT_EQ(textOf("mainLabelText"), "Heading");
    model->mainLabel = "";
    EXPECT_EQ(textOf("mainLabelText"), "");
}

TEST_F(SetupControllerTextsTest, ThePageIsCalledAfterItsStepItsHeadingAndTheProduct) {
    auto& texts = fake.bundle.tables["Localizable"];
    texts["page_name_fmt"] = "Step %1$@ of %2$@: %3$@ - %4$@";
    texts["main_wnd_title_fmt"] = "Install %@";
    texts["browse_path_title"] = "Folder";
    fake.bundle.tables["installer"]["product_name"] = "Filters";
    enterStepWith();
    EXPECT_EQ(textOf("pageName"), "Step 2 of 5: Heading - Install Filters");
    wizard->setIsCustomInstallChosen(true);
    EXPECT_EQ(textOf("pageName"), "Step 2 of 5: Folder - Install Filters");
}

TEST_F(SetupControllerTextsTest, TheLastPageIsCalledAfterTheOutcome) {
    auto& texts = fake.bundle.tables["Localizable"];
    texts["page_name_fmt"] = "Step %1$@ of %2$@: %3$@ - %4$@";
    texts["main_wnd_title_fmt"] = "Install %@";
    texts["outcome_success_fmt"] = "%@ are there";
    fake.bundle.tables["installer"]["product_name"] = "Filters";
    start();
    const auto last = step_number::completion;
    wizard->addStep(nullptr, std::make_shared<ScriptedStep>(1, events),
                    std::make_shared<ScriptedModel>(), last);
    goTo(step_number::hostSelection + 1);  // The steps between go on by themselves.
    EXPECT_EQ(textOf("pageName"), "Step 5 of 5: Filters are there - Install Filters");
    texts.erase("outcome_success_fmt");
    EXPECT_EQ(textOf("pageName"), "Step 5 of 5: Heading - Install Filters");
}

TEST_F(SetupControllerTextsTest, AStepWithoutAModelHasQuestionMarksForAHeading) {
    start();
    wizard->previousView(nullptr);
    EXPECT_EQ(textOf("mainLabelText"), "???");
}

TEST_F(SetupControllerTextsTest, AfterTheEndTheHeadingIsQuestionMarks) {
    start();
    scriptSteps();
    goTo(5);
    EXPECT_EQ(textOf("mainLabelText"), "???");
}

TEST_F(SetupControllerTextsTest, AModelWithoutAHeadingIsNoticed) {
    enterStepWith()->mainLabel.reset();
    EXPECT_EQ(textOf("mainLabelText"), "nil!!!");
}

TEST_F(SetupControllerTextsTest, AModelThatFailsIsNoticed) {
    enterStepWith<FailingModel>();
    EXPECT_EQ(textOf("mainLabelText"), "No text in your setup step model???");
}

TEST_F(SetupControllerTextsTest, TheExplanationIsTheCurrentStepsPlainOrStyled) {
    const auto model = enterStepWith();
    EXPECT_EQ(textOf("informativeText"), "Explanation");
    const StyledText styled = StyledText::fromPlainText("Styled");
    model->informative = styled;
    EXPECT_EQ(valueOf<StyledText>("informativeText"), styled);
}

TEST_F(SetupControllerTextsTest, WithoutAModelTheExplanationIsEmpty) {
    start();
    wizard->previousView(nullptr);
    EXPECT_EQ(wizard->informativeText(), PlainOrStyledText(""));
}

TEST_F(SetupControllerTextsTest, WhatAModelAnnouncesReachesTheWindowOnly) {
    const auto model = enterStepWith();
    events.clear();
    recordAnnouncements();
    recordRefreshes();
    model->willChange("informativeText");
    EXPECT_THAT(refreshed, IsEmpty());
    model->didChange("informativeText");
    model->didChange("backgroundImage");
    // The page's text is read with the explanation.
    EXPECT_THAT(refreshed, ElementsAre("informativeText", "pageText", "backgroundImage"));
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(SetupControllerTextsTest, EveryRegisteredModelIsHeardAlsoWhenItsStepIsNotCurrent) {
    start();
    recordRefreshes();
    for (std::int32_t step = 0; step < 5; ++step) {
        wizard->getModelForStep(step)->didChange("name " + std::to_string(step));
    }
    EXPECT_THAT(refreshed, ElementsAre("name 0", "name 1", "name 2", "name 3", "name 4"));
}

TEST_F(SetupControllerTextsTest, AModelThatWasReplacedIsHeardNoLonger) {
    start();
    const auto old = wizard->getModelForStep(2);
    wizard->addStep(nullptr, nullptr, std::make_shared<ScriptedModel>(), 2);
    recordRefreshes();
    old->didChange("informativeText");
    EXPECT_THAT(refreshed, IsEmpty());
}

TEST_F(SetupControllerTextsTest, WhatIsAnnouncedOnTheControllerReachesTheWindowOnce) {
    start();
    recordRefreshes();
    wizard->willChange("mainLabelText");
    EXPECT_THAT(refreshed, IsEmpty());
    wizard->didChange("mainLabelText");
    EXPECT_THAT(refreshed, UnorderedElementsAre("mainLabelText", "pageName"));
}

TEST_F(SetupControllerTextsTest, AChangeOfTheCopyTellsTheWindowWhetherItMayBeClosed) {
    start();
    recordRefreshes();
    wizard->didChange("copyInProgress");
    EXPECT_THAT(refreshed, ElementsAre("copyInProgress", "canClose"));
}

TEST_F(SetupControllerTextsTest, AChangeOfStepRefreshesWhatNobodyAnnounces) {
    start();
    scriptSteps();
    recordRefreshes();
    recordAnnouncements();
    wizard->nextView(nullptr);
    EXPECT_THAT(refreshed, IsSupersetOf({"backgroundImage", "backgroundImageName", "failedItems",
                                         "hasFailedItems", "failureReason", "installationFailed",
                                         "installerLogExists", "canClose", "isCustomInstallAllowed",
                                         "canConfigurePrismorExternalEditors",
                                         "shouldConfigurePrismorExternalEditors"}));
    EXPECT_THAT(events, Not(Contains("did backgroundImage")));
    EXPECT_THAT(events, Not(Contains("did canClose")));
}

TEST_F(SetupControllerTextsTest, TheTermsAreStyledText) {
    hasLicense("Terms\n1. One");
    start();
    EXPECT_EQ(valueOf<StyledText>("licenseText"), StyledText::fromPlainText("Terms\n1. One"));
}

TEST_F(SetupControllerTextsTest, MissingTermsReadNilAndTheStepWorks) {
    start();
    EXPECT_EQ(plainTextOf("licenseText"), "nil");
    wizard->nextView(nullptr);
    EXPECT_THAT(highlighted(), ElementsAre(1));
}

TEST_F(SetupControllerTextsTest, EmptyTermsAreTermsAllTheSame) {
    hasLicense("");
    start();
    EXPECT_EQ(plainTextOf("licenseText"), "");
}

TEST_F(SetupControllerTextsTest, TermsThatAreTooLongAreCutAndSayWhereAllOfThemAre) {
    hasLicense("Terms\n" + std::string(ShownLength::mostBytes, 'x'));
    start();
    const std::string text = plainTextOf("licenseText");
    EXPECT_TRUE(text.starts_with("Terms\nx"));
    EXPECT_LT(text.size(), ShownLength::mostBytes + 1000);
    EXPECT_THAT(text, HasSubstr("too long"));
    EXPECT_THAT(text, HasSubstr("license.txt"));
}

TEST_F(SetupControllerTextsTest, TheTermsCannotBeReplaced) {
    hasLicense("Terms");
    start();
    recordAnnouncements();
    wizard->setValueForProperty("licenseText", StyledText::fromPlainText("Mine"));
    EXPECT_EQ(plainTextOf("licenseText"), "Terms");
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(SetupControllerTextsTest, TheRegisterTextIsReadAnewEachTime) {
    start();
    EXPECT_EQ(plainTextOf("registerText"), "nil");
    fake.bundle.resources["register.rtf"] = "/register.rtf";
    fake.memory.addFile("/register.rtf", "{\\rtf1 Thanks}");
    EXPECT_EQ(plainTextOf("registerText"), "Thanks");
    fake.memory.addFile("/register.rtf", "no page");
    EXPECT_EQ(plainTextOf("registerText"), "nil");
}

struct TextRow {
    const char* property;
    const char* key;
    const char* text;
    const char* expected;
};

class SetupControllerTextsOfTheWindow : public WizardTest,
                                        public testing::WithParamInterface<TextRow> {};

TEST_P(SetupControllerTextsOfTheWindow, ComeFromTheDefaultTable) {
    fake.bundle.tables["Localizable"][GetParam().key] = GetParam().text;
    start();
    EXPECT_EQ(textOf(GetParam().property), GetParam().expected);
}

TEST_P(SetupControllerTextsOfTheWindow, AreEmptyWhenTheyAreMissing) {
    fake.bundle.tables.clear();
    start();
    EXPECT_EQ(textOf(GetParam().property), "");
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SetupControllerTextsOfTheWindow,
    testing::Values(
        TextRow{"windowTitle", "main_wnd_title_fmt", "%@ Installer", "Filters 2 Installer"},
        TextRow{"aboutMenuText", "about_menu_fmt", "About %@", "About Filters 2"},
        TextRow{"quitMenuText", "quit_menu_fmt", "Quit %@", "Quit Filters 2"},
        TextRow{"hideMenuText", "hide_window_menu_fmt", "Hide %@", "Hide Filters 2"},
        TextRow{"customInstallMenuText", "allow_custom", "Allow %@", "Allow %@"},
        TextRow{"customInstallButtonText", "custom_install_button", "Other…", "Other…"},
        TextRow{"registerNowText", "register_now", "Register", "Register"},
        TextRow{"launchHelpURLString", "launch_help_url_string", "Show help", "Show help"}),
    [](const auto& row) { return std::string(row.param.property); });

TEST_F(SetupControllerTextsTest, TheProductsNameIsTheMakers) {
    start();
    EXPECT_EQ(textOf("productName"), "Filters 2");
}

TEST_F(SetupControllerTextsTest, AMissingProductNameIsEmptyInTheTitles) {
    fake.bundle.tables["Localizable"]["main_wnd_title_fmt"] = "[%@]";
    fake.bundle.tables["installer"].clear();
    start();
    EXPECT_EQ(textOf("windowTitle"), "[]");
    EXPECT_EQ(textOf("productName"), "");
}

TEST_F(SetupControllerTextsTest, APictureIsTheCurrentSteps) {
    enterStepWith<ModelWithPicture>();
    EXPECT_EQ(valueOf<Image>("backgroundImage"), Image{"/picture"});
    EXPECT_EQ(textOf("backgroundImageName"), "") << "only the completion's pictures have names";
    wizard->previousView(nullptr);
    EXPECT_EQ(valueOf<Image>("backgroundImage"), Image());
}

TEST_F(SetupControllerTextsTest, SettingAButtonsTextAnnouncesIt) {
    start();
    recordAnnouncements();
    wizard->setGoForwardText("On");
    wizard->setGoBackwardsText("Back");
    EXPECT_THAT(events, ElementsAre("will goForwardText", "did goForwardText",
                                    "will goBackwardsText", "did goBackwardsText"));
    EXPECT_EQ(textOf("goForwardText"), "On");
    EXPECT_EQ(textOf("goBackwardsText"), "Back");
}

}  // namespace
}  // namespace installer::test
