#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "steps/running/RunningHostViewModel.h"
#include "tests/support/FakeWindow.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class RunningHostViewModelTest : public testing::Test {
  protected:
    RunningHostViewModelTest() {
        fake.bundle.tables["Localizable"] = {{"host_running_title", "Please quit it"},
                                             {"thank_you", "Thank you"},
                                             {"running_blue_dot", "Running applications"}};
        fake.bundle.tables["installer"]["product_name"] = "Filters 2";
        addPage("host_running", "{\\rtf1 Quit %HOSTNAME%.}");
        addPage("proceed", "{\\rtf1 Install %PRODUCTNAME% now.}");
    }

    void addPage(const std::string& name, const std::string& contents) {
        fake.bundle.resources[name + ".rtf"] = "/" + name + ".rtf";
        fake.memory.addFile("/" + name + ".rtf", contents);
    }

    static std::string shown(const RunningHostViewModel& model) {
        const PlainOrStyledText text = model.informativeText();
        const auto* styled = std::get_if<StyledText>(&text);
        if (styled == nullptr) ADD_FAILURE() << "the explanation is not styled";
        return styled == nullptr ? "" : styled->plainText();
    }
    /// The explanations while a host runs and while none does.
    static std::vector<std::string> bothTexts(RunningHostViewModel& model) {
        model.setHostIsRunning(true);
        const std::string running = shown(model);
        model.setHostIsRunning(false);
        return {running, shown(model)};
    }

    FakeWindowPlatform fake;
};

TEST_F(RunningHostViewModelTest, AtFirstNothingRuns) {
    const RunningHostViewModel model(fake.windowPlatform);
    EXPECT_FALSE(model.hostIsRunning());
    EXPECT_EQ(model.mainLabelText(), "Thank you");
    EXPECT_EQ(shown(model), "");
}

TEST_F(RunningHostViewModelTest, TheHeadingSaysWhetherAHostRuns) {
    RunningHostViewModel model(fake.windowPlatform);
    model.setHostIsRunning(true);
    EXPECT_TRUE(model.hostIsRunning());
    EXPECT_EQ(model.mainLabelText(), "Please quit it");
    EXPECT_EQ(model.stepIndicatorLabelText(), "Running applications");
    model.setHostIsRunning(false);
    EXPECT_EQ(model.mainLabelText(), "Thank you");
    EXPECT_EQ(model.stepIndicatorLabelText(), "Running applications");
}

TEST_F(RunningHostViewModelTest, TheExplanationsNameTheHostAndTheProduct) {
    RunningHostViewModel model(fake.windowPlatform);
    model.setHostName("Photoshop");
    EXPECT_THAT(bothTexts(model), ElementsAre("Quit Photoshop.", "Install Filters 2 now."));
}

TEST_F(RunningHostViewModelTest, EachNameIsPutIntoTheWholePageAnew) {
    RunningHostViewModel model(fake.windowPlatform);
    model.setHostName("Photoshop");
    model.setHostName("Lightroom");
    fake.bundle.tables["installer"]["product_name"] = "Filters 3";
    model.setHostName("Aperture");
    EXPECT_THAT(bothTexts(model), ElementsAre("Quit Aperture.", "Install Filters 3 now."));
}

TEST_F(RunningHostViewModelTest, EveryPlaceForANameIsFilledIn) {
    addPage("host_running", "{\\rtf1 %HOSTNAME%, %HOSTNAME%%HOSTNAME%}");
    addPage("proceed", "{\\rtf1 %PRODUCTNAME% %PRODUCTNAME%}");
    RunningHostViewModel model(fake.windowPlatform);
    model.setHostName("Elements");
    EXPECT_THAT(bothTexts(model), ElementsAre("Elements, ElementsElements", "Filters 2 Filters 2"));
}

TEST_F(RunningHostViewModelTest, ANameThatHoldsThePlaceForANameEnds) {
    fake.bundle.tables["installer"]["product_name"] = "A %PRODUCTNAME%";
    RunningHostViewModel model(fake.windowPlatform);
    model.setHostName("%HOSTNAME%%HOSTNAME%");
    EXPECT_THAT(bothTexts(model),
                ElementsAre("Quit %HOSTNAME%%HOSTNAME%.", "Install A %PRODUCTNAME% now."));
}

TEST_F(RunningHostViewModelTest, ThePlacesOfTheOtherPageAreLeftAlone) {
    addPage("host_running", "{\\rtf1 %HOSTNAME% %PRODUCTNAME%}");
    addPage("proceed", "{\\rtf1 %HOSTNAME% %PRODUCTNAME%}");
    RunningHostViewModel model(fake.windowPlatform);
    model.setHostName("Photoshop");
    EXPECT_THAT(bothTexts(model), ElementsAre("Photoshop %PRODUCTNAME%", "%HOSTNAME% Filters 2"));
}

TEST_F(RunningHostViewModelTest, EmptyNamesAreFilledInToo) {
    fake.bundle.tables.erase("installer");
    RunningHostViewModel model(fake.windowPlatform);
    model.setHostName("");
    EXPECT_THAT(bothTexts(model), ElementsAre("Quit .", "Install  now."));
}

TEST_F(RunningHostViewModelTest, APageWithoutAPlaceForTheNameIsNeverShown) {
    addPage("host_running", "{\\rtf1 Quit it.}");
    addPage("proceed", "{\\rtf1 Install it.}");
    RunningHostViewModel model(fake.windowPlatform);
    model.setHostName("Photoshop");
    EXPECT_THAT(bothTexts(model), ElementsAre("", ""));
}

TEST_F(RunningHostViewModelTest, AMissingPageIsLoggedAndShownAsNil) {
    fake.bundle.resources.clear();
    RunningHostViewModel model(fake.windowPlatform);
    EXPECT_THAT(fake.log.lines, SizeIs(2));
    EXPECT_THAT(bothTexts(model), ElementsAre("nil", "nil"));
    model.setHostName("Photoshop");
    EXPECT_THAT(bothTexts(model), ElementsAre("nil", "nil"));
}

TEST_F(RunningHostViewModelTest, OneBrokenPageLeavesTheOtherAlone) {
    addPage("proceed", "no RTF: %PRODUCTNAME%");
    RunningHostViewModel model(fake.windowPlatform);
    model.setHostName("Photoshop");
    EXPECT_THAT(bothTexts(model), ElementsAre("Quit Photoshop.", "nil"));
    EXPECT_THAT(fake.log.lines, SizeIs(1));
}

TEST_F(RunningHostViewModelTest, MissingTextsAreEmpty) {
    fake.bundle.tables.clear();
    RunningHostViewModel model(fake.windowPlatform);
    EXPECT_EQ(model.mainLabelText(), "");
    model.setHostIsRunning(true);
    EXPECT_EQ(model.mainLabelText(), "");
    EXPECT_EQ(model.stepIndicatorLabelText(), "");
}

TEST_F(RunningHostViewModelTest, AnnouncesTheExplanationAroundEachChange) {
    RunningHostViewModel model(fake.windowPlatform);
    std::vector<std::string> heard;
    const Subscription subscription = model.observe([&](Observable::Moment moment,
                                                        std::string_view property) {
        const bool will = moment == Observable::Moment::willChange;
        heard.push_back((will ? "will " : "did ") + std::string(property) + ": " + shown(model));
    });
    model.setHostName("Photoshop");
    EXPECT_THAT(heard, ElementsAre("will informativeText: ",
                                   "did informativeText: Install Filters 2 now."));
    heard.clear();
    model.setHostIsRunning(true);
    EXPECT_THAT(heard, ElementsAre("will informativeText: Install Filters 2 now.",
                                   "did informativeText: Quit Photoshop."));
}

}  // namespace
