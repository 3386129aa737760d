#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "product/BundleUserDefaults.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* domain = "com.example.installer";

class BundleUserDefaultsTest : public testing::Test {
  protected:
    std::optional<PreferenceValue> stored(const std::string& key) {
        return fake.preferences.value(domain, key);
    }

    FakePlatform fake;
    BundleUserDefaults defaults{fake.platform, domain};
};

TEST_F(BundleUserDefaultsTest, AKeyThatWasNeitherSetNorRegisteredHasNoValue) {
    EXPECT_FALSE(defaults.objectForKey("customPath"));
    EXPECT_FALSE(defaults.stringForKey("customPath"));
    EXPECT_FALSE(defaults.boolForKey("customPath"));
}

TEST_F(BundleUserDefaultsTest, AKeyThatWasNeverSetGivesTheRegisteredDefault) {
    defaults.registerDefaults({{"launch_help_url", true}});
    EXPECT_EQ(defaults.objectForKey("launch_help_url"), PreferenceValue(true));
    EXPECT_TRUE(defaults.boolForKey("launch_help_url"));
}

TEST_F(BundleUserDefaultsTest, AStoredValueWinsOverTheRegisteredOne) {
    defaults.registerDefaults({{"launch_help_url", true}});
    defaults.setObject(false, "launch_help_url");
    EXPECT_EQ(defaults.objectForKey("launch_help_url"), PreferenceValue(false));
    EXPECT_FALSE(defaults.boolForKey("launch_help_url"));
}

TEST_F(BundleUserDefaultsTest, AValueRegisteredAfterAnotherWasSetDoesNotHideIt) {
    defaults.setObject("/Plug-ins", "customPath");
    defaults.registerDefaults({{"customPath", "/Default"}});
    EXPECT_EQ(defaults.stringForKey("customPath"), "/Plug-ins");
}

TEST_F(BundleUserDefaultsTest, RemovingAKeyShowsTheRegisteredDefaultAgain) {
    defaults.registerDefaults({{"customPath", "/Default"}});
    defaults.setObject("/Plug-ins", "customPath");
    defaults.removeObjectForKey("customPath");
    EXPECT_EQ(defaults.stringForKey("customPath"), "/Default");
    EXPECT_FALSE(stored("customPath"));
}

TEST_F(BundleUserDefaultsTest, RemovingAKeyThatIsNotThereIsHarmless) {
    defaults.removeObjectForKey("customPath");
    EXPECT_FALSE(defaults.objectForKey("customPath"));
}

TEST_F(BundleUserDefaultsTest, RegisteringReplacesAllThatWasRegisteredBefore) {
    defaults.registerDefaults({{"first", true}, {"both", "old"}});
    defaults.registerDefaults({{"both", "new"}, {"second", true}});
    EXPECT_FALSE(defaults.objectForKey("first"));
    EXPECT_EQ(defaults.stringForKey("both"), "new");
    EXPECT_TRUE(defaults.boolForKey("second"));
}

TEST_F(BundleUserDefaultsTest, RegisteredDefaultsAreNeverStoredAndBelongToOneObject) {
    defaults.registerDefaults({{"launch_help_url", true}});
    (void)defaults.boolForKey("launch_help_url");
    defaults.synchronize();
    EXPECT_THAT(fake.preferences.values, IsEmpty());
    EXPECT_FALSE(BundleUserDefaults(fake.platform, domain).objectForKey("launch_help_url"));
}

TEST_F(BundleUserDefaultsTest, AValueThatWasSetIsSeenAtOnceByOtherObjectsOfTheDomainOnly) {
    const BundleUserDefaults same(fake.platform, domain);
    const BundleUserDefaults other(fake.platform, "com.example.other");
    defaults.setObject("/Plug-ins", "customPath");
    EXPECT_EQ(same.stringForKey("customPath"), "/Plug-ins");
    EXPECT_FALSE(other.objectForKey("customPath"));
}

TEST_F(BundleUserDefaultsTest, SettingAndReadingDoNotSynchronize) {
    defaults.setBool(true, "launch_help_url");
    (void)defaults.boolForKey("launch_help_url");
    defaults.removeObjectForKey("customPath");
    EXPECT_THAT(fake.preferences.synchronized, IsEmpty());
}

TEST_F(BundleUserDefaultsTest, SynchronizeFlushesTheDomainAndTellsItsSuccess) {
    EXPECT_TRUE(defaults.synchronize());
    fake.preferences.canWrite = false;
    defaults.setBool(true, "launch_help_url");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_THAT(fake.preferences.synchronized, testing::Contains(domain));
}

TEST_F(BundleUserDefaultsTest, EveryLivingObjectSynchronizesWhenTheApplicationEnds) {
    const BundleUserDefaults other(fake.platform, "com.example.other");
    {
        const BundleUserDefaults gone(fake.platform, "com.example.gone");
    }
    fake.notifications.post({applicationWillTerminate});
    EXPECT_THAT(fake.preferences.synchronized, ElementsAre(domain, "com.example.other"));
}

TEST_F(BundleUserDefaultsTest, OtherNotificationsSynchronizeNothing) {
    fake.notifications.post({"stateDidChange"});
    EXPECT_THAT(fake.preferences.synchronized, IsEmpty());
}

TEST_F(BundleUserDefaultsTest, AFailureToWriteAsTheApplicationEndsIsNoFault) {
    fake.preferences.canWrite = false;
    defaults.setBool(true, "launch_help_url");
    fake.notifications.post({applicationWillTerminate});
    EXPECT_TRUE(defaults.boolForKey("launch_help_url"));
}

TEST_F(BundleUserDefaultsTest, BooleansAreStoredAsBooleans) {
    defaults.setBool(true, "on");
    defaults.setBool(false, "off");
    EXPECT_EQ(stored("on"), PreferenceValue(true));
    EXPECT_EQ(stored("off"), PreferenceValue(false));
}

struct Value {
    std::string name;
    PreferenceValue value;
    bool truth;
    std::string text;
};

class BundleUserDefaultsValue : public BundleUserDefaultsTest,
                                public testing::WithParamInterface<Value> {};

TEST_P(BundleUserDefaultsValue, IsReadAsATruthAndAsText) {
    defaults.setObject(GetParam().value, "stored");
    defaults.registerDefaults({{"registered", GetParam().value}});
    for (const char* key : {"stored", "registered"}) {
        EXPECT_EQ(defaults.objectForKey(key), GetParam().value) << key;
        EXPECT_EQ(defaults.boolForKey(key), GetParam().truth) << key;
        EXPECT_EQ(defaults.stringForKey(key), GetParam().text) << key;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Values, BundleUserDefaultsValue,
    testing::Values(
        Value{"BooleanTrue", true, true, "1"}, Value{"BooleanFalse", false, false, "0"},
        Value{"One", std::int64_t{1}, true, "1"}, Value{"Zero", std::int64_t{0}, false, "0"},
        Value{"Negative", std::int64_t{-7}, true, "-7"},
        Value{"Smallest", std::numeric_limits<std::int64_t>::min(), true, "-9223372036854775808"},
        Value{"Half", 0.5, true, "0.5"}, Value{"RealZero", 0.0, false, "0"},
        Value{"RealOne", 1.0, true, "1"},
        Value{"Tiny", std::numeric_limits<double>::denorm_min(), true, "5e-324"},
        Value{"LongestReal", -2.2250738585072014e-308, true, "-2.2250738585072014e-308"},
        Value{"TextYES", "YES", true, "YES"}, Value{"Textyes", "yes", true, "yes"},
        Value{"TextTrue", "True", true, "True"}, Value{"Text1", "1", true, "1"},
        Value{"TextNO", "NO", false, "NO"}, Value{"Text0", "0", false, "0"},
        Value{"TextEmpty", "", false, ""}, Value{"TextY", "Y", false, "Y"},
        Value{"Text1WithMore", "1 ", false, "1 "}, Value{"TextPath", "/Größe", false, "/Größe"}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace installer::test
