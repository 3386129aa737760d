#include <chrono>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "install/engine/ReplaceDecision.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

std::optional<DecimalNumber> versionNumber(const std::string& version) {
    FakeBundle bundle;
    bundle.information["CFBundleVersion"] = version;
    return ReplaceDecision::versionFromBundle(bundle);
}

struct VersionRow {
    std::string version;
    std::string number;
};

class ReplaceDecisionVersionFromBundle : public testing::TestWithParam<VersionRow> {};

TEST_P(ReplaceDecisionVersionFromBundle, IsTheConcatenationOfItsParts) {
    EXPECT_EQ(versionNumber(GetParam().version), DecimalNumber::parsed(GetParam().number));
}

INSTANTIATE_TEST_SUITE_P(
    Versions, ReplaceDecisionVersionFromBundle,
    testing::Values(VersionRow{"1.2.3", "100020003"}, VersionRow{"2.0", "20000"},
                    VersionRow{"7", "7"}, VersionRow{"1.12345.2", "1123450002"},
                    VersionRow{"1.x.2", "100000002"}, VersionRow{"1.5b3", "10005"},
                    VersionRow{"1..2", "100000002"}, VersionRow{"", "0"},
                    VersionRow{"-1.2", "-10002"}, VersionRow{"1.-2.3", "1"},
                    VersionRow{"1.2.3.4.5.6.7.8.9.10.11.12",
                               "100020003000400050006000700080009001000110012"}),
    [](const auto& test) {
        std::string name = "Version";
        for (const char character : test.param.version) {
            name += character == '.' ? "_" : character == '-' ? "Minus" : std::string(1, character);
        }
        return name;
    });

TEST(ReplaceDecision, ABundleWithoutVersionHasNoNumber) {
    EXPECT_EQ(ReplaceDecision::versionFromBundle(FakeBundle()), std::nullopt);
}

TEST(ReplaceDecision, VersionsAreNotFilledUpToAsManyParts) {
    EXPECT_GT(versionNumber("1.2.3"), versionNumber("2.0"));
}

class ReplaceDecisionByBundleVersion : public testing::Test {
  protected:
    void addSource(const std::string& version) {
        fake.bundles.informationByPath["/new.app"] = {{"CFBundleVersion", version}};
    }
    void addExisting(const std::string& version) {
        fake.memory.addFolder("/old.app");
        fake.bundles.informationByPath["/old.app"] = {{"CFBundleVersion", version}};
    }
    bool answer() {
        return ReplaceDecision(fake.platform)
            .isFileOkToInstallByBundleVersion("/new.app", "/old.app");
    }

    FakePlatform fake;
};

TEST_F(ReplaceDecisionByBundleVersion, EqualVersionsAreReplaced) {
    addSource("1.2.3");
    addExisting("1.2.3");
    EXPECT_TRUE(answer());
}

TEST_F(ReplaceDecisionByBundleVersion, AnOlderSourceDoesNotReplace) {
    addSource("1.2.2");
    addExisting("1.2.3");
    EXPECT_FALSE(answer());
}

TEST_F(ReplaceDecisionByBundleVersion, ANewerSourceReplaces) {
    addSource("1.10.0");
    addExisting("1.9.9");
    EXPECT_TRUE(answer());
}

TEST_F(ReplaceDecisionByBundleVersion, AMissingDestinationIsInstalledWithoutLookingAtTheSource) {
    EXPECT_TRUE(answer());
}

TEST_F(ReplaceDecisionByBundleVersion, WhatIsNoBundleIsReplaced) {
    fake.memory.addFile("/old.app");
    EXPECT_TRUE(answer());
}

TEST_F(ReplaceDecisionByBundleVersion, ASourceThatIsNoBundleReplacesNoBundle) {
    addExisting("1.0");
    EXPECT_FALSE(answer());
}

TEST_F(ReplaceDecisionByBundleVersion, ASourceWithoutVersionReplacesNothing) {
    fake.bundles.informationByPath["/new.app"] = {};
    addExisting("0");
    EXPECT_FALSE(answer());
    fake.bundles.informationByPath["/old.app"] = {};
    EXPECT_FALSE(answer());
}

TEST_F(ReplaceDecisionByBundleVersion, AnExistingBundleWithoutVersionGivesWayToAVersion) {
    addSource("0.1");
    addExisting("");
    fake.bundles.informationByPath["/old.app"] = {};
    EXPECT_TRUE(answer());
}

class ReplaceDecisionByModificationTime : public testing::Test {
  protected:
    void add(const std::string& path, int seconds) {
        fake.memory.addFile(path);
        setDate(path, seconds);
    }
    void setDate(const std::string& path, int seconds) {
        fake.memory.setModificationDate(path, FileTime(std::chrono::seconds(seconds)));
    }
    bool answer() {
        return ReplaceDecision(fake.platform).isFileOkToInstallByModificationTime("/new", "/old");
    }

    FakePlatform fake;
};

TEST_F(ReplaceDecisionByModificationTime, OnlyAnEarlierSourceIsHeldBack) {
    add("/new", 100);
    add("/old", 101);
    EXPECT_FALSE(answer());
    setDate("/old", 100);
    EXPECT_TRUE(answer());
    setDate("/old", 99);
    EXPECT_TRUE(answer());
}

TEST_F(ReplaceDecisionByModificationTime, DatesAreComparedToTheNanosecond) {
    add("/new", 100);
    add("/old", 100);
    fake.memory.setModificationDate(
        "/old", FileTime(std::chrono::seconds(100)) + std::chrono::nanoseconds(1));
    EXPECT_FALSE(answer());
}

TEST_F(ReplaceDecisionByModificationTime, AMissingDestinationIsInstalled) {
    add("/new", 1);
    EXPECT_TRUE(answer());
}

TEST_F(ReplaceDecisionByModificationTime, AnEmptyFolderGivesWayWhateverItsDate) {
    add("/new", 100);
    fake.memory.addFolder("/old");
    setDate("/old", 200);
    EXPECT_TRUE(answer());
    fake.memory.addFile("/old/entry");
    EXPECT_FALSE(answer());
}

TEST_F(ReplaceDecisionByModificationTime, ADateThatCannotBeReadHoldsNothingBack) {
    add("/old", 200);
    EXPECT_TRUE(answer());
}

}  // namespace
}  // namespace installer::test
