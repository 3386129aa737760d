#include <string>

#include <gtest/gtest.h>

#include "app/texts/HostRefusal.h"
#include "hosts/HostModel.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

class HostRefusalTest : public testing::Test {
  protected:
    HostRefusalTest() {
        fake.memory.addFile("/Users/tester/Library/Preferences/Adobe Photoshop CS6 Paths",
                            std::string("/Apps/CS6\0/Their/Plug-Ins\0", 26));
        fake.authorizations.linkRefusals["/Their/Plug-Ins"] = LinkRefusal::ofAnotherUser;
    }

    void addPayload(const std::string& folder) {
        fake.memory.addFile("/Installer.app/Contents/Resources/files/" + folder + "/a");
    }
    LinkRefusal refusal() {
        return linkRefusalOf(fake.platform, PhotoshopHostModel::initWithPathsFilePath(
                                                fake.platform,
                                                "/Users/tester/Library/Preferences/"
                                                "Adobe Photoshop CS6 Paths"));
    }

    FakePlatform fake;
};

TEST_F(HostRefusalTest, AFolderThatFilesGoIntoCounts) {
    addPayload("PHOTOSHOP_PLUGINS");
    EXPECT_EQ(refusal(), LinkRefusal::ofAnotherUser);
}

TEST_F(HostRefusalTest, AFolderThatNothingGoesIntoDoesNotMatter) {
    addPayload("PHOTOSHOP");
    EXPECT_EQ(refusal(), LinkRefusal::none);
}

TEST_F(HostRefusalTest, ACustomFolderCountsAsAnyOther) {
    addPayload("PHOTOSHOP_PLUGINS");
    EXPECT_EQ(linkRefusalOf(fake.platform, UnknownHostModel(fake.platform, "/Their/Plug-Ins")),
              LinkRefusal::ofAnotherUser);
    EXPECT_EQ(linkRefusalOf(fake.platform, UnknownHostModel(fake.platform, "")), LinkRefusal::none);
}

}  // namespace
}  // namespace installer::test
