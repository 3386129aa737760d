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
