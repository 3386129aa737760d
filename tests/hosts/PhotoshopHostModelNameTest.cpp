#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "hosts/PhotoshopHostModel.h"
#include "tests/hosts/RowName.h"
#include "tests/support/FakePlatform.h"

// What a Photoshop host knows from its display name alone.

namespace installer::test {

namespace {

PhotoshopHostModel hostNamed(const std::string& name) {
    FakePlatform fake;
    return PhotoshopHostModel::initWithHostName(fake.platform, name);
}

struct VersionRow {
    std::string name;
    std::uint32_t version;
    std::uint32_t minorVersion;
    std::uint64_t displaySortOrder;
};

class PhotoshopHostModelNameVersion : public testing::TestWithParam<VersionRow> {};

TEST_P(PhotoshopHostModelNameVersion, FollowsFromTheName) {
    const PhotoshopHostModel host = hostNamed(GetParam().name);
    EXPECT_EQ(host.version(), GetParam().version);
    EXPECT_EQ(host.minorVersion(), GetParam().minorVersion);
    EXPECT_EQ(host.displaySortOrder(), GetParam().displaySortOrder);
}

INSTANTIATE_TEST_SUITE_P(
    CreativeSuite, PhotoshopHostModelNameVersion,
    testing::Values(
        VersionRow{"Adobe Photoshop CS", 0, 0, 1000}, VersionRow{"Adobe Photoshop CS2", 2, 0, 998},
        VersionRow{"Adobe Photoshop CS3", 3, 0, 997}, VersionRow{"Adobe Photoshop CS4", 4, 0, 996},
        VersionRow{"Adobe Photoshop CS5", 5, 0, 995},
        VersionRow{"Adobe Photoshop CS5.1", 5, 0, 995},
        VersionRow{"Adobe Photoshop CS6", 6, 0, 994}, VersionRow{"Adobe Photoshop CS 6", 6, 0, 994},
        VersionRow{"Adobe Photoshop CS+6", 6, 0, 994},
        VersionRow{"Adobe Photoshop CS-3", 4294967293U, 0, 1003},
        VersionRow{"Adobe Photoshop CS99999999999", 2147483647U, 0, 2147484649U},
        VersionRow{"Adobe Photoshop CS-99999999999", 2147483648U, 0, 2147484648U},
        VersionRow{"Adobe Photoshop CS CC 2019.5", 0, 5, 1000}),
    [](const auto& row) { return rowName(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    CreativeCloud, PhotoshopHostModelNameVersion,
    testing::Values(VersionRow{"Adobe Photoshop CC", 7, 0, 993},
                    VersionRow{"Adobe Photoshop CC 2014", 2014, 0, 4294966282U},
                    VersionRow{"Adobe Photoshop CC 2015", 2015, 0, 4294966281U},
                    VersionRow{"Adobe Photoshop CC 2015.5", 2015, 5, 4294966281U},
                    VersionRow{"Adobe Photoshop CC 2015.", 2015, 0, 4294966281U},
                    VersionRow{"Adobe Photoshop CC 2015.5.2", 2015, 5, 4294966281U},
                    VersionRow{"Adobe Photoshop CC 2015.-1", 2015, 4294967295U, 4294966281U},
                    VersionRow{"Adobe Photoshop CC 2019", 2019, 0, 4294966277U},
                    VersionRow{"Adobe Photoshop CC 2019 CC 2015.5", 2019, 5, 4294966277U},
                    VersionRow{"Adobe Photoshop CC-2019", 2019, 0, 4294966277U},
                    VersionRow{"Adobe Photoshop CC 201", 7, 0, 993},
                    VersionRow{"Adobe Photoshop CC ", 7, 0, 993},
                    VersionRow{"Adobe Photoshop CC.5", 7, 0, 993},
                    VersionRow{"Adobe Photoshop CC  2019", 201, 0, 799},
                    VersionRow{"Adobe Photoshop CC 20 19", 20, 0, 980},
                    VersionRow{"Adobe Photoshop CC (2017)", 0, 0, 1000},
                    VersionRow{"Adobe Photoshop CC -999", 4294966297U, 0, 1999}),
    [](const auto& row) { return rowName(row.param.name); });

// Characters count, however many bytes each of them takes.
INSTANTIATE_TEST_SUITE_P(
    OtherScripts, PhotoshopHostModelNameVersion,
    testing::Values(VersionRow{"Adobe Photoshop CC\u20142019", 2019, 0, 4294966277U},
                    VersionRow{"Adobe Photoshop CC\U0001F4F72019.3", 2019, 3, 4294966277U},
                    VersionRow{"Adobe Photoshop CC 201\u00E9", 201, 0, 799},
                    VersionRow{"Adobe Photoshop CC \u65E5\u672C", 7, 0, 993},
                    VersionRow{"Adobe Photoshop CC \u65E5\u672C\u8A9E\u7248", 0, 0, 1000},
                    VersionRow{"\u30A2\u30C9\u30D3 Photoshop CC 2018", 2018, 0, 4294966278U},
                    VersionRow{"Adobe \u0424\u043E\u0442\u043E CS6", 6, 0, 994},
                    VersionRow{"Adobe \xFF\xFE CC 2017", 2017, 0, 4294966279U},
                    VersionRow{"Adobe Photoshop CC\xFF"
                               "2017",
                               2017, 0, 4294966279U}),
    [](const auto& row) { return rowName(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Elements, PhotoshopHostModelNameVersion,
    testing::Values(VersionRow{"Adobe Photoshop Elements", 0, 0, 3000},
                    VersionRow{"Adobe Photoshop Elements 11", 11, 0, 2989},
                    VersionRow{"Adobe Photoshop Elements 11 Editor", 11, 0, 2989},
                    VersionRow{"Adobe Photoshop Elements11", 11, 0, 2989},
                    VersionRow{"Adobe Photoshop Elements   11  ", 11, 0, 2989},
                    VersionRow{"Adobe Photoshop Elements\u00A0"
                               "12",
                               12, 0, 2988},
                    VersionRow{"Adobe Photoshop Elements 2018", 2018, 0, 982},
                    VersionRow{"Adobe Photoshop Elements -4", 4294967292U, 0, 3004},
                    VersionRow{"Adobe Photoshop Elements CC 2019", 0, 0, 3000},
                    VersionRow{"Adobe Photoshop CS6 Elements 9", 9, 0, 2991}),
    [](const auto& row) { return rowName(row.param.name); });

INSTANTIATE_TEST_SUITE_P(NoVersion, PhotoshopHostModelNameVersion,
                         testing::Values(VersionRow{"", 0, 0, 1000},
                                         VersionRow{"Adobe Photoshop 2020", 0, 0, 1000},
                                         VersionRow{"Adobe Photoshop 7.0", 0, 0, 1000},
                                         VersionRow{"adobe photoshop cs6", 0, 0, 1000},
                                         VersionRow{"Adobe Photoshop Cc 2019", 0, 0, 1000},
                                         VersionRow{"CS6", 0, 0, 1000},
                                         VersionRow{"CC 2019", 0, 0, 1000},
                                         VersionRow{"Elements 11", 0, 0, 1000}),
                         [](const auto& row) { return rowName(row.param.name); });

struct AbilityRow {
    std::string name;
    bool isElements;
    bool shouldInstallScripts;
    bool shouldInstallPanels;
};

class PhotoshopHostModelNameAbilities : public testing::TestWithParam<AbilityRow> {};

TEST_P(PhotoshopHostModelNameAbilities, FollowFromTheName) {
    const PhotoshopHostModel host = hostNamed(GetParam().name);
    EXPECT_EQ(host.isElements(), GetParam().isElements);
    EXPECT_EQ(host.shouldInstallScripts(), GetParam().shouldInstallScripts);
    EXPECT_EQ(host.shouldInstallPanels(), GetParam().shouldInstallPanels);
}

INSTANTIATE_TEST_SUITE_P(
    Releases, PhotoshopHostModelNameAbilities,
    testing::Values(AbilityRow{"Adobe Photoshop CS2", false, false, false},
                    AbilityRow{"Adobe Photoshop CS20", false, false, true},
                    AbilityRow{"Adobe PhotoshopCS2", false, true, false},
                    AbilityRow{"Adobe Photoshop CS3", false, true, false},
                    AbilityRow{"Adobe Photoshop CS4", false, true, true},
                    AbilityRow{"Adobe Photoshop CS-3", false, true, true},
                    AbilityRow{"Adobe Photoshop CC", false, true, true},
                    AbilityRow{"Adobe Photoshop CC 2019", false, true, true},
                    AbilityRow{"Adobe Photoshop 2020", false, true, false},
                    AbilityRow{"Adobe Photoshop Elements 3", true, false, false},
                    AbilityRow{"Adobe Photoshop Elements 11", true, false, true},
                    AbilityRow{"Adobe PhotoshopElements 11", false, false, false},
                    AbilityRow{"Adobe Photoshop elements 11", false, true, false}),
    [](const auto& row) { return rowName(row.param.name); });

TEST(PhotoshopHostModelName, IsAtLeastEveryVersionUpToItsOwn) {
    const PhotoshopHostModel host = hostNamed("Adobe Photoshop CS6");
    EXPECT_TRUE(host.hostIsAtLeastVersionCS(5));
    EXPECT_TRUE(host.hostIsAtLeastVersionCS(6));
    EXPECT_FALSE(host.hostIsAtLeastVersionCS(7));
}

TEST(PhotoshopHostModelName, ComparesVersionsUnsigned) {
    EXPECT_FALSE(hostNamed("Adobe Photoshop CC 2019").hostIsAtLeastVersionCS(-1));
    EXPECT_TRUE(hostNamed("Adobe Photoshop CS-1").hostIsAtLeastVersionCS(-1));
    EXPECT_TRUE(hostNamed("Adobe Photoshop CS-1").hostIsAtLeastVersionCS(2019));
}

TEST(PhotoshopHostModelName, ElementsHasNoVersionRuleOfItsOwn) {
    EXPECT_TRUE(hostNamed("Adobe Photoshop Elements 9").hostIsAtLeastVersionElements(9));
    EXPECT_FALSE(hostNamed("Adobe Photoshop Elements 8").hostIsAtLeastVersionElements(9));
    EXPECT_TRUE(hostNamed("Adobe Photoshop CC 2019").hostIsAtLeastVersionElements(9));
    EXPECT_FALSE(hostNamed("Adobe Photoshop CS6").hostIsAtLeastVersionElements(-1));
}

TEST(PhotoshopHostModelName, ElementsHasNoPhotoshopVersion) {
    EXPECT_EQ(hostNamed("Adobe Photoshop Elements 2018").photoshopVersionFromDisplayName(), 0U);
    EXPECT_EQ(hostNamed("Adobe Photoshop CC 2018").photoshopVersionFromDisplayName(), 2018U);
    EXPECT_EQ(hostNamed("Adobe Photoshop CC").photoshopVersionFromDisplayName(), 7U);
}

}  // namespace

}  // namespace installer::test
