#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "steps/licence/LicenseModel.h"
#include "tests/support/FakePlatform.h"

namespace {

using namespace installer;
using namespace installer::test;

class LicenseModelTest : public testing::Test {
  protected:
    void hasLicense(const std::string& contents) {
        fake.bundle.resources["license.txt"] = "/license.txt";
        fake.memory.addFile("/license.txt", contents);
    }
    FakePlatform fake;
};

TEST_F(LicenseModelTest, TheTermsAreTheWholeFile) {
    hasLicense("Schöne Bedingungen\n\n1. …\n");
    EXPECT_EQ(LicenseModel(fake.platform).licenseText(), "Schöne Bedingungen\n\n1. …\n");
}

TEST_F(LicenseModelTest, ABundleWithoutTermsHasNone) {
    EXPECT_EQ(LicenseModel(fake.platform).licenseText(), std::nullopt);
}

TEST_F(LicenseModelTest, AFileThatIsGoneIsNoTerms) {
    fake.bundle.resources["license.txt"] = "/license.txt";
    EXPECT_EQ(LicenseModel(fake.platform).licenseText(), std::nullopt);
}

TEST_F(LicenseModelTest, TermsThatAreNotUtf8AreNone) {
    hasLicense("Sch\xf6ne Bedingungen");
    EXPECT_EQ(LicenseModel(fake.platform).licenseText(), std::nullopt);
}

TEST_F(LicenseModelTest, TheLogSaysWhyThereAreNoTerms) {
    static_cast<void>(LicenseModel(fake.platform));
    EXPECT_TRUE(fake.log.has("The licence cannot be shown: the bundle has no license.txt"));
    fake.bundle.resources["license.txt"] = "/license.txt";
    static_cast<void>(LicenseModel(fake.platform));
    EXPECT_TRUE(std::ranges::any_of(fake.log.lines, [](const std::string& line) {
        return line.starts_with("The licence cannot be shown: /license.txt: ");
    }));
    hasLicense("Sch\xf6ne Bedingungen");
    static_cast<void>(LicenseModel(fake.platform));
    EXPECT_TRUE(fake.log.has("The licence cannot be shown: /license.txt is not UTF-8"));
}

TEST_F(LicenseModelTest, TermsThatAreThereNeedNoLine) {
    hasLicense("Terms");
    static_cast<void>(LicenseModel(fake.platform));
    EXPECT_TRUE(fake.log.lines.empty());
}

TEST_F(LicenseModelTest, TheTextsAreLookedUpAndTheExplanationIsEmpty) {
    fake.bundle.tables["Localizable"]["license_instructions"] = "Please read";
    fake.bundle.tables["Localizable"]["license_blue_dot"] = "Licence";
    const LicenseModel model(fake.platform);
    EXPECT_EQ(model.mainLabelText(), "Please read");
    EXPECT_EQ(model.stepIndicatorLabelText(), "Licence");
    EXPECT_EQ(model.informativeText(), PlainOrStyledText(""));
}

TEST_F(LicenseModelTest, MissingTextsAreEmpty) {
    const LicenseModel model(fake.platform);
    EXPECT_EQ(model.mainLabelText(), "");
    EXPECT_EQ(model.stepIndicatorLabelText(), "");
}

}  // namespace
