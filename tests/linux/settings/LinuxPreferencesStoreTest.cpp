#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "linux/files/LinuxSearchPaths.h"
#include "linux/settings/LinuxPreferencesStore.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* domain = "com.example.installer";
constexpr const char* fileBelowHome = "Library/Preferences/com.example.installer.plist";

LinuxSearchPaths pathsOf(const ScratchFolder& home) {
    LinuxSearchPaths::Values values;
    values.home = home.path();
    return LinuxSearchPaths(values);
}

class LinuxPreferencesStoreTest : public testing::Test {
  protected:
    /// What another start of the program would read.
    std::optional<PreferenceValue> onDisk(const std::string& key) {
        RecordingLog unused;
        return LinuxPreferencesStore(pathsOf(home_), unused).value(domain, key);
    }
    void expectNothingWritten() const {
        EXPECT_FALSE(std::filesystem::exists(home_.at("Library")));
    }

    ScratchFolder home_;
    RecordingLog log_;
    LinuxPreferencesStore store_{pathsOf(home_), log_};
};

TEST_F(LinuxPreferencesStoreTest, AValueThatWasSetIsSeenAtOnceAndOnTheDiskAfterSynchronize) {
    store_.setValue(domain, "customPath", "/Plug Ins/日本");
    EXPECT_EQ(store_.value(domain, "customPath"), PreferenceValue("/Plug Ins/日本"));
    expectNothingWritten();
    EXPECT_TRUE(store_.synchronize(domain));
    EXPECT_EQ(onDisk("customPath"), PreferenceValue("/Plug Ins/日本"));
    EXPECT_EQ(store_.value(domain, "customPath"), PreferenceValue("/Plug Ins/日本"));
    EXPECT_THAT(home_.names("Library/Preferences"), ElementsAre("com.example.installer.plist"));
}

TEST_F(LinuxPreferencesStoreTest, KeepsEachType) {
    store_.setValue(domain, "flag", false);
    store_.setValue(domain, "number", std::int64_t{-7});
    store_.setValue(domain, "real", 2.5);
    EXPECT_TRUE(store_.synchronize(domain));
    EXPECT_EQ(onDisk("flag"), PreferenceValue(false));
    EXPECT_EQ(onDisk("number"), PreferenceValue(std::int64_t{-7}));
    EXPECT_EQ(onDisk("real"), PreferenceValue(2.5));
}

TEST_F(LinuxPreferencesStoreTest, KeepsTextsOfAnyBytes) {
    for (const std::string& path :
         {std::string("/caf\xE9"), std::string("/a\nb\tc"), std::string("/a\x1B\x01"),
          std::string("/<&>\"'"), std::string(" /blanks "), std::string("/a\r")}) {
        store_.setValue(domain, "customPath", path);
        EXPECT_TRUE(store_.synchronize(domain));
        EXPECT_EQ(onDisk("customPath"), PreferenceValue(path));
    }
}

TEST_F(LinuxPreferencesStoreTest, ARunThatSetNothingWritesNothing) {
    EXPECT_EQ(store_.value(domain, "customPath"), std::nullopt);
    EXPECT_TRUE(store_.synchronize(domain));
    expectNothingWritten();
}

TEST_F(LinuxPreferencesStoreTest, ASecondSynchronizeWritesNothingMore) {
    store_.setValue(domain, "a", true);
    EXPECT_TRUE(store_.synchronize(domain));
    std::filesystem::remove(home_.at(fileBelowHome));
    EXPECT_TRUE(store_.synchronize(domain));
    EXPECT_FALSE(std::filesystem::exists(home_.at(fileBelowHome)));
}

TEST_F(LinuxPreferencesStoreTest, SynchronizeAllWritesEveryDomainThatWasSet) {
    store_.setValue("com.example.one", "a", true);
    store_.setValue("com.example.two", "a", true);
    static_cast<void>(store_.value("com.example.only read", "a"));
    EXPECT_TRUE(store_.synchronizeAll());
    EXPECT_THAT(home_.names("Library/Preferences"),
                testing::UnorderedElementsAre("com.example.one.plist", "com.example.two.plist"));
}

TEST_F(LinuxPreferencesStoreTest, SynchronizeAllWritesNothingWhereNothingIsLeftToWrite) {
    static_cast<void>(store_.value(domain, "a"));
    EXPECT_TRUE(store_.synchronizeAll());
    expectNothingWritten();
    store_.setValue(domain, "a", true);
    EXPECT_TRUE(store_.synchronize(domain));
    std::filesystem::remove(home_.at(fileBelowHome));
    EXPECT_TRUE(store_.synchronizeAll());
    EXPECT_FALSE(std::filesystem::exists(home_.at(fileBelowHome)));
}

TEST_F(LinuxPreferencesStoreTest, ADomainThatCannotBeWrittenDoesNotHoldUpTheOthers) {
    // A file that cannot be read is never replaced.
    home_.addFolder("Library/Preferences/com.example.closed.plist");
    store_.setValue("com.example.closed", "a", true);
    store_.setValue(domain, "a", true);
    EXPECT_FALSE(store_.synchronizeAll());
    EXPECT_EQ(onDisk("a"), PreferenceValue(true));
    std::filesystem::remove(home_.at("Library/Preferences/com.example.closed.plist"));
    EXPECT_TRUE(store_.synchronizeAll());
    EXPECT_TRUE(std::filesystem::exists(home_.at("Library/Preferences/com.example.closed.plist")));
}

TEST_F(LinuxPreferencesStoreTest, ARemovedKeyIsGoneAtOnceAndFromTheDiskAfterSynchronize) {
    store_.setValue(domain, "a", true);
    store_.setValue(domain, "b", true);
    EXPECT_TRUE(store_.synchronize(domain));
    store_.setValue(domain, "a", std::nullopt);
    EXPECT_EQ(store_.value(domain, "a"), std::nullopt);
    EXPECT_EQ(onDisk("a"), PreferenceValue(true));
    EXPECT_TRUE(store_.synchronize(domain));
    EXPECT_EQ(onDisk("a"), std::nullopt);
    EXPECT_EQ(onDisk("b"), PreferenceValue(true));
}

TEST_F(LinuxPreferencesStoreTest, KeysThatOthersWroteMeanwhileAreKept) {
    store_.setValue(domain, "mine", std::string("1"));
    home_.add(fileBelowHome,
              "<plist><dict><key>theirs</key><array><string>deep</string></array>"
              "<key>mine</key><string>0</string><key>count</key><integer>3</integer>"
              "<key>when</key><date>2020-01-02T03:04:05Z</date></dict></plist>");
    EXPECT_TRUE(store_.synchronize(domain));
    const std::string written = home_.read(fileBelowHome);
    EXPECT_THAT(written, HasSubstr("<string>deep</string>"));
    EXPECT_THAT(written, HasSubstr("2020-01-02T03:04:05Z"));
    EXPECT_EQ(onDisk("count"), PreferenceValue(std::int64_t{3}));
    EXPECT_EQ(onDisk("mine"), PreferenceValue("1"));
}

TEST_F(LinuxPreferencesStoreTest, ABinaryFileStaysBinary) {
    home_.add(fileBelowHome, std::string("bplist00\xD0\x08\0\0\0\0\0\0\1\1\0\0\0\0\0\0\0\1"
                                         "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x09",
                                         42));
    store_.setValue(domain, "a", std::string("b"));
    EXPECT_TRUE(store_.synchronize(domain));
    EXPECT_TRUE(home_.read(fileBelowHome).starts_with("bplist00"));
    EXPECT_EQ(onDisk("a"), PreferenceValue("b"));
    EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(LinuxPreferencesStoreTest, AnExistingFileKeepsItsPermissions) {
    home_.add(fileBelowHome, "<plist><dict/></plist>");
    ASSERT_EQ(::chmod(home_.at(fileBelowHome).c_str(), 0600), 0);
    store_.setValue(domain, "a", true);
    EXPECT_TRUE(store_.synchronize(domain));
    struct stat status{};
    ASSERT_EQ(::stat(home_.at(fileBelowHome).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST_F(LinuxPreferencesStoreTest, ABrokenFileIsLoggedOnceAndReplacedOnlyWhenSomethingWasSet) {
    home_.add(fileBelowHome, "broken");
    EXPECT_EQ(store_.value(domain, "a"), std::nullopt);
    EXPECT_EQ(store_.value(domain, "b"), std::nullopt);
    EXPECT_TRUE(store_.synchronize(domain));
    EXPECT_EQ(home_.read(fileBelowHome), "broken");
    EXPECT_THAT(log_.lines, ElementsAre(HasSubstr(home_.at(fileBelowHome))));
    store_.setValue(domain, "a", true);
    EXPECT_TRUE(store_.synchronize(domain));
    EXPECT_EQ(onDisk("a"), PreferenceValue(true));
    EXPECT_THAT(log_.lines, SizeIs(1));
}

TEST_F(LinuxPreferencesStoreTest, AFileThatCannotBeReadIsNeverReplaced) {
    home_.addFifo(fileBelowHome);
    EXPECT_EQ(store_.value(domain, "a"), std::nullopt);
    store_.setValue(domain, "a", true);
    EXPECT_FALSE(store_.synchronize(domain));
    EXPECT_TRUE(std::filesystem::is_fifo(home_.at(fileBelowHome)));
    EXPECT_EQ(store_.value(domain, "a"), PreferenceValue(true));
    EXPECT_THAT(log_.lines, SizeIs(1));
}

TEST_F(LinuxPreferencesStoreTest, AHugeFileIsNeitherReadNorReplaced) {
    home_.addSparse(fileBelowHome, 1ull << 40);
    store_.setValue(domain, "a", true);
    EXPECT_FALSE(store_.synchronize(domain));
    EXPECT_EQ(std::filesystem::file_size(home_.at(fileBelowHome)), 1ull << 40);
}

TEST_F(LinuxPreferencesStoreTest, AFailedWriteKeepsTheValuesForTheNextOne) {
    home_.add("Library", "no folder");
    store_.setValue(domain, "a", true);
    EXPECT_FALSE(store_.synchronize(domain));
    std::filesystem::remove(home_.at("Library"));
    EXPECT_TRUE(store_.synchronize(domain));
    EXPECT_EQ(onDisk("a"), PreferenceValue(true));
}

TEST_F(LinuxPreferencesStoreTest, DomainsAreApart) {
    store_.setValue(domain, "a", true);
    EXPECT_EQ(store_.value("other", "a"), std::nullopt);
    EXPECT_TRUE(store_.synchronize("other"));
    expectNothingWritten();
}

TEST_F(LinuxPreferencesStoreTest, NamesThatAreNoDomainAreRefused) {
    home_.add("Library/outside.plist", "<plist><dict><key>a</key><true/></dict></plist>");
    for (const std::string& name :
         {std::string("../outside"), std::string(), std::string("a\0b", 3)}) {
        EXPECT_EQ(store_.value(name, "a"), std::nullopt);
        store_.setValue(name, "a", false);
        EXPECT_EQ(store_.value(name, "a"), std::nullopt);
        EXPECT_FALSE(store_.synchronize(name));
    }
    EXPECT_THAT(home_.names("Library"), ElementsAre("outside.plist"));
    EXPECT_THAT(home_.read("Library/outside.plist"), HasSubstr("<true/>"));
}

TEST_F(LinuxPreferencesStoreTest, WithoutAHomeFolderValuesLiveInTheProcessOnly) {
    LinuxPreferencesStore store(LinuxSearchPaths(LinuxSearchPaths::Values{}), log_);
    EXPECT_TRUE(store.synchronize(domain));
    store.setValue(domain, "a", true);
    EXPECT_EQ(store.value(domain, "a"), PreferenceValue(true));
    EXPECT_FALSE(store.synchronize(domain));
    EXPECT_THAT(log_.lines, ElementsAre(HasSubstr("no home folder")));
}

TEST_F(LinuxPreferencesStoreTest, RootLeavesTheSettingsToTheOwnerOfTheHomeFolder) {
    if (::geteuid() != 0) GTEST_SKIP() << "needs to be root to give files away";
    ASSERT_EQ(::chown(home_.path().c_str(), 12345, 12345), 0);
    store_.setValue(domain, "a", true);
    EXPECT_TRUE(store_.synchronize(domain));
    struct stat status{};
    ASSERT_EQ(::stat(home_.at(fileBelowHome).c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 12345u);
    ASSERT_EQ(::stat(home_.at("Library").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 12345u);
}

}  // namespace
}  // namespace installer::test
