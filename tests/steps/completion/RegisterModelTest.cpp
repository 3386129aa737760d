#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "steps/completion/RegisterModel.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

using testing::IsEmpty;

class RegisterModelTest : public testing::Test {
  protected:
    RegisterModelTest() {
        fake.bundle.tables = {{"Localizable",
                               {{"register_title", "Finished"},
                                {"register_blue_dot", "Finish"},
                                {"install_failed", "Write to %@.\nSorry."}}},
                              {"installer", {{"company_name", "Acme"}}}};
        fake.bundle.resources["register.rtf"] = "/register.rtf";
        fake.memory.addFile("/register.rtf", "{\\rtf1 Thank you}");
    }

    /// The explanation without its styles; none when it has none to begin with.
    static std::string plainText(const RegisterModel& model) {
        const PlainOrStyledText text = model.informativeText();
        const auto* styled = std::get_if<StyledText>(&text);
        return styled == nullptr ? "not styled: " + std::get<std::string>(text)
                                 : styled->plainText();
    }

    FakePlatform fake;
};

TEST_F(RegisterModelTest, ReadsItsTextsFromTheDefaultTable) {
    const RegisterModel model(fake.platform);
    EXPECT_EQ(model.mainLabelText(), "Finished");
    EXPECT_EQ(model.stepIndicatorLabelText(), "Finish");
}

TEST_F(RegisterModelTest, SaysNothingBeforeTheStepIsEntered) {
    const RegisterModel model(fake.platform);
    EXPECT_EQ(model.informativeText(), PlainOrStyledText(""));
    EXPECT_FALSE(model.indicateFailure());
}

TEST_F(RegisterModelTest, TheSuccessMessageIsTheBundlesPage) {
    RegisterModel model(fake.platform);
    model.useRegisterText();
    EXPECT_EQ(plainText(model), "Thank you");
    EXPECT_FALSE(model.indicateFailure());
}

TEST_F(RegisterModelTest, TheFailureMessageNamesTheCompanyInStyledText) {
    RegisterModel model(fake.platform);
    model.useFailText();
    EXPECT_EQ(model.informativeText(),
              PlainOrStyledText(StyledText::fromPlainText("Write to Acme.\nSorry.")));
    EXPECT_TRUE(model.indicateFailure());
}

TEST_F(RegisterModelTest, TheLastChoiceCounts) {
    RegisterModel model(fake.platform);
    model.useFailText();
    model.useRegisterText();
    EXPECT_EQ(plainText(model), "Thank you");
    EXPECT_FALSE(model.indicateFailure());
    model.useFailText();
    EXPECT_TRUE(model.indicateFailure());
}

TEST_F(RegisterModelTest, ThePageIsReadOnceWhenTheModelIsMade) {
    RegisterModel model(fake.platform);
    fake.memory.addFile("/register.rtf", "{\\rtf1 Changed}");
    model.useRegisterText();
    EXPECT_EQ(plainText(model), "Thank you");
}

TEST_F(RegisterModelTest, APageThatIsMissingReadsNil) {
    fake.bundle.resources.clear();
    RegisterModel model(fake.platform);
    model.useRegisterText();
    EXPECT_EQ(plainText(model), "nil");
}

TEST_F(RegisterModelTest, APageThatIsNoRtfReadsNil) {
    fake.memory.addFile("/register.rtf", "Thank you");
    RegisterModel model(fake.platform);
    model.useRegisterText();
    EXPECT_EQ(plainText(model), "nil");
}

TEST_F(RegisterModelTest, MissingTextsAreEmpty) {
    fake.bundle.tables.clear();
    RegisterModel model(fake.platform);
    model.useFailText();
    EXPECT_EQ(model.mainLabelText(), "");
    EXPECT_EQ(model.stepIndicatorLabelText(), "");
    EXPECT_EQ(plainText(model), "");
}

TEST_F(RegisterModelTest, AMissingCompanyNameIsEmptyInTheFailureMessage) {
    fake.bundle.tables["installer"].clear();
    RegisterModel model(fake.platform);
    model.useFailText();
    EXPECT_EQ(plainText(model), "Write to .\nSorry.");
}

TEST_F(RegisterModelTest, ThePictureFollowsTheOutcome) {
    fake.bundle.resources["checkmark.png"] = "/checkmark.png";
    fake.bundle.resources["Installer_Error.png"] = "/error.png";
    RegisterModel model(fake.platform);
    EXPECT_EQ(model.backgroundImage(), Image{"/checkmark.png"});
    model.useFailText();
    EXPECT_EQ(model.backgroundImage(), Image{"/error.png"});
    model.useRegisterText();
    EXPECT_EQ(model.backgroundImage(), Image{"/checkmark.png"});
}

TEST_F(RegisterModelTest, ThePictureMayBeOfSeveralTypes) {
    const RegisterModel model(fake.platform);
    EXPECT_EQ(model.backgroundImage(), Image());
    fake.bundle.resources["checkmark.svg"] = "/checkmark.svg";
    EXPECT_EQ(model.backgroundImage(), Image{"/checkmark.svg"});
    fake.bundle.resources["checkmark.tiff"] = "/checkmark.tiff";
    EXPECT_EQ(model.backgroundImage(), Image{"/checkmark.tiff"});
    fake.bundle.resources["checkmark.png"] = "/checkmark.png";
    EXPECT_EQ(model.backgroundImage(), Image{"/checkmark.png"});
}

TEST_F(RegisterModelTest, ChoosingATextAnnouncesNothing) {
    RegisterModel model(fake.platform);
    std::vector<std::string> announced;
    const Subscription handle = model.observe(
        [&](Observable::Moment, std::string_view name) { announced.emplace_back(name); });
    model.useFailText();
    model.useRegisterText();
    EXPECT_THAT(announced, IsEmpty());
}

}  // namespace
}  // namespace installer::test
