#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "steps/install/InstallFilesModel.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(InstallFilesModel, ItsTextsComeFromTheBundleAndTheTitleNamesTheMaker) {
    FakePlatform fake;
    fake.bundle.tables["Localizable"] = {{"copy_files_title", "Installing %@"},
                                         {"copy_files_blue_dot", "Install"},
                                         {"copy_files_text", "Please wait"}};
    const InstallFilesModel model(fake.platform);
    EXPECT_EQ(model.mainLabelText(), "Installing Acme");
    EXPECT_EQ(model.stepIndicatorLabelText(), "Install");
    EXPECT_EQ(model.informativeText(), PlainOrStyledText("Please wait"));
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

TEST(InstallFilesModel, WithoutTheMakersNameTheTitleShowsItsKey) {
    FakePlatform fake;
    fake.bundle.tables = {{"Localizable", {{"copy_files_title", "Installing %@"}}}};
    EXPECT_EQ(InstallFilesModel(fake.platform).mainLabelText(), "Installing company_name");
}

TEST(InstallFilesModel, ATitleThatCannotBeMadeIsLoggedAndEmpty) {
    FakePlatform fake;
    const InstallFilesModel model(fake.platform);
    EXPECT_EQ(model.mainLabelText(), "");
    EXPECT_EQ(model.stepIndicatorLabelText(), "");
    EXPECT_THAT(fake.log.lines,
                ElementsAre("can't create mainLabelText in InstallFilesModel init()"));
}

TEST(InstallFilesModel, ANewExplanationIsAnnouncedAroundTheChange) {
    FakePlatform fake;
    InstallFilesModel model(fake.platform);
    std::vector<std::string> events;
    const Subscription subscription =
        model.observe([&](Observable::Moment moment, std::string_view property) {
            events.push_back((moment == Observable::Moment::willChange ? "will " : "did ") +
                             std::string(property) + " " +
                             std::get<std::string>(model.informativeText()));
        });
    model.setInformativeText("now");
    EXPECT_THAT(events, ElementsAre("will informativeText ", "did informativeText now"));
}

}  // namespace
}  // namespace installer::test
