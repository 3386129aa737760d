#include <string>
#include <variant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "steps/aperture/ApertureRunModel.h"
#include "tests/support/FakeWindow.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::SizeIs;

class ApertureRunModelTest : public testing::Test {
  protected:
    std::string explanation() {
        const PlainOrStyledText text = ApertureRunModel(fake.windowPlatform).informativeText();
        const auto* styled = std::get_if<StyledText>(&text);
        return styled == nullptr ? "not styled" : styled->plainText();
    }

    FakeWindowPlatform fake;
};

TEST_F(ApertureRunModelTest, TheTextsAreLookedUp) {
    fake.bundle.tables["Localizable"] = {{"aperture_title", "Aperture"},
                                         {"aperture_blue_dot", "Set up Aperture"}};
    const ApertureRunModel model(fake.windowPlatform);
    EXPECT_EQ(model.mainLabelText(), "Aperture");
    EXPECT_EQ(model.stepIndicatorLabelText(), "Set up Aperture");
}

TEST_F(ApertureRunModelTest, MissingTextsAreEmpty) {
    const ApertureRunModel model(fake.windowPlatform);
    EXPECT_EQ(model.mainLabelText(), "");
    EXPECT_EQ(model.stepIndicatorLabelText(), "");
}

TEST_F(ApertureRunModelTest, TheExplanationIsThePage) {
    fake.bundle.resources["aperture.rtf"] = "/aperture.rtf";
    fake.memory.addFile("/aperture.rtf", "{\\rtf1 It is set up now.}");
    EXPECT_EQ(explanation(), "It is set up now.");
}

TEST_F(ApertureRunModelTest, AMissingPageIsLoggedAndShownAsNil) {
    EXPECT_EQ(explanation(), "nil");
    EXPECT_THAT(fake.log.lines, SizeIs(1));
}

TEST_F(ApertureRunModelTest, ThePictureIsAperturesIcon) {
    fake.workspace.icons["/Applications/Aperture.app"] = {"/icons/aperture.png"};
    EXPECT_EQ(ApertureRunModel(fake.windowPlatform).backgroundImage().path, "/icons/aperture.png");
}

TEST_F(ApertureRunModelTest, ThePictureIsThatOfTheTargetVolumesAperture) {
    fake.searchPaths.volume = "/Volumes/Other";
    fake.workspace.icons["/Applications/Aperture.app"] = {"/icons/running-system.png"};
    fake.workspace.icons["/Volumes/Other/Applications/Aperture.app"] = {"/icons/volume.png"};
    EXPECT_EQ(ApertureRunModel(fake.windowPlatform).backgroundImage().path, "/icons/volume.png");
}

TEST_F(ApertureRunModelTest, WithoutApertureThereIsNoPicture) {
    EXPECT_EQ(ApertureRunModel(fake.windowPlatform).backgroundImage(), Image());
}

}  // namespace
