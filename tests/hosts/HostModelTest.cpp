#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "hosts/HostModel.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

namespace {

enum class Kind { photoshop, lightRoom, aperture, fireworks, unknown };

HostModel hostOf(Kind kind, Platform& platform) {
    switch (kind) {
        case Kind::photoshop:
            return PhotoshopHostModel::initWithHostName(platform, "Adobe Photoshop CC 2019");
        case Kind::lightRoom:
            return LightRoomHostModel(platform, "Lightroom 5");
        case Kind::aperture:
            return ApertureHostModel(platform, "Aperture 3");
        case Kind::fireworks:
            return FireworksHostModel(platform, "Adobe Fireworks CS6");
        case Kind::unknown:
            return UnknownHostModel(platform, "/My Plug-Ins");
    }
    ADD_FAILURE() << "a kind of host that the test does not know";
    return UnknownHostModel(platform, "");
}

struct AnswerRow {
    std::string kindName;
    Kind kind;
    std::string hostName;
    std::optional<bool> hostIsInstalled;
    std::optional<bool> hostIsSelected;
    std::optional<bool> shouldInstallScripts;
    std::optional<bool> shouldInstallPanels;
    std::optional<bool> shouldInstallPlugIns;
    std::optional<bool> hostIs64Bit;
    std::optional<std::uint64_t> displaySortOrder;
};

class HostModelAnswers : public testing::TestWithParam<AnswerRow> {};

TEST_P(HostModelAnswers, AreGivenByPropertyName) {
    FakePlatform fake;
    fake.bundle.tables["Localizable"]["custom_path"] = "Custom folder";
    const HostModel host = hostOf(GetParam().kind, fake.platform);
    EXPECT_EQ(host.hostName(), GetParam().hostName);
    EXPECT_EQ(host.booleanNamed("hostIsInstalled"), GetParam().hostIsInstalled);
    EXPECT_EQ(host.booleanNamed("hostIsSelected"), GetParam().hostIsSelected);
    EXPECT_EQ(host.booleanNamed("shouldInstallScripts"), GetParam().shouldInstallScripts);
    EXPECT_EQ(host.booleanNamed("shouldInstallPanels"), GetParam().shouldInstallPanels);
    EXPECT_EQ(host.booleanNamed("shouldInstallPlugIns"), GetParam().shouldInstallPlugIns);
    EXPECT_EQ(host.booleanNamed("hostIs64Bit"), GetParam().hostIs64Bit);
    EXPECT_EQ(host.displaySortOrder(), GetParam().displaySortOrder);
}

TEST_P(HostModelAnswers, AreGivenToNoOtherName) {
    FakePlatform fake;
    const HostModel host = hostOf(GetParam().kind, fake.platform);
    for (const char* name : {"", "hostname", "hostName", "displaySortOrder", "HostIsInstalled"}) {
        EXPECT_EQ(host.booleanNamed(name), std::nullopt) << name;
    }
}

TEST_P(HostModelAnswers, TheSelectionIsTakenByKindsThatHaveOne) {
    FakePlatform fake;
    const HostModel host = hostOf(GetParam().kind, fake.platform);
    for (const bool selected : {true, false, true}) {
        host.setHostIsSelected(selected);
        const std::optional<bool> expected =
            GetParam().hostIsSelected ? std::optional(selected) : std::nullopt;
        EXPECT_EQ(host.booleanNamed("hostIsSelected"), expected);
    }
}

constexpr std::nullopt_t notAnswered = std::nullopt;

INSTANTIATE_TEST_SUITE_P(
    Kinds, HostModelAnswers,
    testing::Values(AnswerRow{"Photoshop", Kind::photoshop, "Adobe Photoshop CC 2019", false, true,
                              true, true, notAnswered, notAnswered, 4294966277U},
                    AnswerRow{"LightRoom", Kind::lightRoom, "Lightroom 5", false, true, false,
                              false, notAnswered, notAnswered, 5000U},
                    AnswerRow{"Aperture", Kind::aperture, "Aperture 3", false, true, false, false,
                              notAnswered, notAnswered, 5000U},
                    AnswerRow{"Fireworks", Kind::fireworks, "Adobe Fireworks CS6", false,
                              notAnswered, false, false, true, false, notAnswered},
                    AnswerRow{"Unknown", Kind::unknown, "Custom folder", true, false, false, false,
                              true, notAnswered, 6000U}),
    [](const auto& row) { return row.param.kindName; });

template <class Host>
concept AnswersAppPath = requires(const Host& host) { host.appPath(); };
template <class Host>
concept AnswersFolders = requires(const Host& host) {
    host.plugInPath();
    host.scriptsPath();
    host.panelsPath();
};

TEST(HostModel, OnlyThreeKindsHaveAnApplicationFolder) {
    EXPECT_TRUE(AnswersAppPath<PhotoshopHostModel>);
    EXPECT_TRUE(AnswersAppPath<LightRoomHostModel>);
    EXPECT_TRUE(AnswersAppPath<ApertureHostModel>);
    EXPECT_FALSE(AnswersAppPath<FireworksHostModel>);
    EXPECT_FALSE(AnswersAppPath<UnknownHostModel>);
}

TEST(HostModel, EveryKindHasFolders) {
    EXPECT_TRUE(AnswersFolders<PhotoshopHostModel>);
    EXPECT_TRUE(AnswersFolders<LightRoomHostModel>);
    EXPECT_TRUE(AnswersFolders<ApertureHostModel>);
    EXPECT_TRUE(AnswersFolders<FireworksHostModel>);
    EXPECT_TRUE(AnswersFolders<UnknownHostModel>);
}

struct PlugInPathRow {
    std::string kindName;
    Kind kind;
    std::string plugInPath;
};

class HostModelPlugInPath : public testing::TestWithParam<PlugInPathRow> {};

TEST_P(HostModelPlugInPath, IsTheKindsOwnOnTheTargetVolume) {
    FakePlatform fake;
    fake.searchPaths.volume = "/Volumes/Other";
    EXPECT_EQ(hostOf(GetParam().kind, fake.platform).plugInPath(), GetParam().plugInPath);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, HostModelPlugInPath,
    testing::Values(PlugInPathRow{"Photoshop", Kind::photoshop,
                                  "/Volumes/Other/Library/Application Support/Adobe/Plug-Ins/CC"},
                    PlugInPathRow{"LightRoom", Kind::lightRoom, ""},
                    PlugInPathRow{"Aperture", Kind::aperture, ""},
                    PlugInPathRow{"Fireworks", Kind::fireworks,
                                  "/Volumes/Other/Applications/Adobe Fireworks CS6/Plug-Ins"},
                    PlugInPathRow{"UnknownStaysAsPicked", Kind::unknown, "/My Plug-Ins"}),
    [](const auto& row) { return row.param.kindName; });

TEST(HostModel, AnswersChangeWithTheHost) {
    FakePlatform fake;
    const HostModel host = UnknownHostModel(fake.platform, "");
    host.as<UnknownHostModel>()->setShouldInstallScripts(true);
    EXPECT_EQ(host.booleanNamed("shouldInstallScripts"), true);
}

TEST(HostModel, ACopyIsTheSameHost) {
    FakePlatform fake;
    const HostModel host = UnknownHostModel(fake.platform, "");
    HostModel copy = UnknownHostModel(fake.platform, "");
    EXPECT_NE(copy, host);
    copy = host;
    EXPECT_EQ(copy, host);
    copy.as<UnknownHostModel>()->setHostIsSelected(true);
    EXPECT_TRUE(host.as<UnknownHostModel>()->hostIsSelected());
}

TEST(HostModel, ATwinIsAnotherHost) {
    FakePlatform fake;
    const HostModel host = UnknownHostModel(fake.platform, "/Same");
    const HostModel twin = UnknownHostModel(fake.platform, "/Same");
    EXPECT_NE(twin, host);
    twin.as<UnknownHostModel>()->setHostIsSelected(true);
    EXPECT_FALSE(host.as<UnknownHostModel>()->hostIsSelected());
}

TEST(HostModel, IsOfOneKindOnly) {
    FakePlatform fake;
    const HostModel host = ApertureHostModel(fake.platform, "Aperture 3");
    ASSERT_NE(host.as<ApertureHostModel>(), nullptr);
    EXPECT_EQ(host.as<ApertureHostModel>()->hostName(), "Aperture 3");
    EXPECT_EQ(host.as<LightRoomHostModel>(), nullptr);
    EXPECT_EQ(host.as<PhotoshopHostModel>(), nullptr);
    EXPECT_EQ(host.as<FireworksHostModel>(), nullptr);
    EXPECT_EQ(host.as<UnknownHostModel>(), nullptr);
}

}  // namespace

}  // namespace installer::test
