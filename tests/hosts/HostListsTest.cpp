#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/HostLists.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Optional;

class HostLists : public testing::Test {
  protected:
    HostModel photoshop(const std::string& name) {
        return PhotoshopHostModel::initWithHostName(fake_.platform, name);
    }

    FakePlatform fake_;
    HostModel lightRoom_ = LightRoomHostModel(fake_.platform, "Lightroom 5");
    HostModel aperture_ = ApertureHostModel(fake_.platform, "Aperture 3");
    HostModel fireworks_ = FireworksHostModel(fake_.platform, "Adobe Fireworks CS6");
    HostModel custom_ = UnknownHostModel(fake_.platform, "/My Plug-Ins");
};

TEST_F(HostLists, KeepTheHostsThatAnswerYesInOrder) {
    const HostModel newest = photoshop("Adobe Photoshop CC 2019");
    const HostModel oldest = photoshop("Adobe Photoshop CS3");
    const auto answering = hostsAnsweringYes({custom_, newest, lightRoom_, oldest, fireworks_},
                                             "shouldInstallScripts");
    EXPECT_THAT(answering, Optional(ElementsAre(newest, oldest)));
}

TEST_F(HostLists, FailToFilterWhenOneHostDoesNotAnswer) {
    EXPECT_FALSE(hostsAnsweringYes({custom_, fireworks_}, "hostIsSelected"));
    EXPECT_FALSE(hostsAnsweringYes({fireworks_, lightRoom_}, "shouldInstallPlugIns"));
    EXPECT_FALSE(hostsAnsweringYes({custom_}, "bogus"));
}

TEST_F(HostLists, TheSelectedOnesStayInOrder) {
    const HostModel newest = photoshop("Adobe Photoshop CC 2019");
    lightRoom_.setHostIsSelected(false);
    EXPECT_THAT(selectedAmong({newest, lightRoom_, custom_, aperture_}),
                ElementsAre(newest, aperture_));
}

TEST_F(HostLists, NothingIsSelectedWhenOneHostCannotBeAsked) {
    const HostModel newest = photoshop("Adobe Photoshop CC 2019");
    EXPECT_THAT(selectedAmong({newest, fireworks_, aperture_}), IsEmpty());
    EXPECT_THAT(selectedAmong({fireworks_}), IsEmpty());
}

TEST_F(HostLists, AnEmptyListAnswersEveryQuestion) {
    const auto answering = hostsAnsweringYes({}, "bogus");
    EXPECT_THAT(answering, Optional(IsEmpty()));
    const auto sorted = sortedByDisplaySortOrder({});
    EXPECT_THAT(sorted, Optional(IsEmpty()));
}

TEST_F(HostLists, SortAscendingAndStably) {
    const HostModel bareCC = photoshop("Adobe Photoshop CC");
    const HostModel newest = photoshop("Adobe Photoshop CC 2019");
    const HostModel older = photoshop("Adobe Photoshop CC 2015");
    const auto sorted =
        sortedByDisplaySortOrder({older, custom_, aperture_, newest, lightRoom_, bareCC});
    EXPECT_THAT(sorted,
                Optional(ElementsAre(bareCC, aperture_, lightRoom_, custom_, newest, older)));
}

TEST_F(HostLists, HostsOfEqualOrderStayInPlaceInALongList) {
    std::vector<HostModel> hosts;
    for (int pair = 0; pair < 50; ++pair) {
        hosts.emplace_back(LightRoomHostModel(fake_.platform, "Lightroom"));
        hosts.emplace_back(ApertureHostModel(fake_.platform, "Aperture"));
    }
    const auto sorted = sortedByDisplaySortOrder(hosts);
    EXPECT_THAT(sorted, Optional(ElementsAreArray(hosts)));
}

TEST_F(HostLists, FailToSortWhenOneHostHasNoOrder) {
    EXPECT_FALSE(sortedByDisplaySortOrder({custom_, fireworks_, lightRoom_}));
    EXPECT_FALSE(sortedByDisplaySortOrder({fireworks_}));
}

}  // namespace

}  // namespace installer::test
