#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "linux/files/LinuxSearchPaths.h"
#include "privileged/system/Accounts.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

using testing::ElementsAre;

Environment environmentOf(std::map<std::string, std::string> variables) {
    return [variables = std::move(variables)](const std::string& name) {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    };
}

LinuxSearchPaths::Values someone() {
    LinuxSearchPaths::Values values;
    values.home = "/home/some one";
    values.ownHomes = {"/home/some one"};
    values.loginName = "someone";
    return values;
}

LinuxSearchPaths onVolume(const std::string& volume) {
    auto values = someone();
    values.targetVolume = volume;
    return LinuxSearchPaths(values);
}

LinuxSearchPaths fromEnvironment(std::map<std::string, std::string> variables) {
    auto paths = LinuxSearchPaths::fromEnvironment(environmentOf(std::move(variables)));
    EXPECT_TRUE(paths);
    return std::move(paths).value();
}

std::string systemsLoginName() {
    const passwd* entry = ::getpwuid(::geteuid());
    return entry == nullptr ? std::to_string(::geteuid()) : entry->pw_name;
}

TEST(LinuxSearchPaths, TheSystemsFoldersAreProtectedAndTheUsersHomeIsNot) {
    const LinuxSearchPaths paths(someone());
    EXPECT_TRUE(paths.isProtected("/etc/cron.d/x"));
    EXPECT_TRUE(paths.isProtected("/home/other/x"));
    EXPECT_FALSE(paths.isProtected("/home/some one/x"));
    EXPECT_FALSE(paths.isProtected("/Library/x"));
}

TEST(LinuxSearchPaths, TheSystemsFoldersAreThoseOfTheTargetVolumeWhereverItLies) {
    for (const std::string volume : {"/vol", "/mnt/vol", "/var/tmp/vol", "/home/other/vol"}) {
        const LinuxSearchPaths paths = onVolume(volume);
        EXPECT_TRUE(paths.isProtected(volume + "/etc/cron.d/x")) << volume;
        EXPECT_TRUE(paths.isProtected(volume + "/Users/other/x")) << volume;
        EXPECT_TRUE(paths.isProtected(volume)) << volume;
        EXPECT_FALSE(paths.isProtected(volume + "/Users/someone/x")) << volume;
        EXPECT_FALSE(paths.isProtected(volume + "/Library/x")) << volume;
        // What the user has picked outside it.
        EXPECT_TRUE(paths.isProtected(volume + "/../../../../../etc/x")) << volume;
        EXPECT_TRUE(paths.isProtected("/etc/x")) << volume;
        EXPECT_FALSE(paths.isProtected("/home/some one/x")) << volume;
    }
}

TEST(LinuxSearchPathsFromEnvironment, HomeMakesNoFolderOfTheSystemADestination) {
    for (const std::string home : {"/etc", "/usr/lib", "/var/spool", "/"}) {
        EXPECT_TRUE(fromEnvironment({{"HOME", home}}).isProtected("/etc/x")) << home;
        EXPECT_TRUE(fromEnvironment({{"HOME", home}}).isProtected("/usr/lib/x")) << home;
        EXPECT_TRUE(fromEnvironment({{"HOME", home}}).isProtected("/var/spool/x")) << home;
    }
}

TEST(LinuxSearchPaths, TheRunningSystemsFoldersHaveNoPrefix) {
    const LinuxSearchPaths paths(someone());
    EXPECT_EQ(paths.localApplicationSupportFolder(), "/Library/Application Support");
    EXPECT_EQ(paths.localApplicationsFolder(), "/Applications");
    EXPECT_EQ(paths.userApplicationSupportFolder(), "/home/some one/Library/Application Support");
    EXPECT_EQ(paths.userPreferencesFolder(), "/home/some one/Library/Preferences");
    EXPECT_EQ(paths.userApplicationsFolder(), "/home/some one/.local/share/applications");
    EXPECT_EQ(paths.homeFolder(), "/home/some one");
    EXPECT_EQ(paths.onTargetVolume("/a/../b"), "/a/../b");
    EXPECT_EQ(paths.onTargetVolume("relative"), "relative");
    EXPECT_EQ(paths.onTargetVolume(""), "");
    EXPECT_EQ(paths.asSeenOnTargetVolume("/a"), "/a");
}

TEST(LinuxSearchPaths, EveryFixedFolderLiesOnTheTargetVolume) {
    const auto paths = onVolume("/Volumes/Other Disk");
    EXPECT_EQ(paths.localApplicationSupportFolder(),
              "/Volumes/Other Disk/Library/Application Support");
    EXPECT_EQ(paths.localApplicationsFolder(), "/Volumes/Other Disk/Applications");
    EXPECT_EQ(paths.userApplicationSupportFolder(),
              "/Volumes/Other Disk/Users/someone/Library/Application Support");
    EXPECT_EQ(paths.userPreferencesFolder(),
              "/Volumes/Other Disk/Users/someone/Library/Preferences");
    EXPECT_EQ(paths.homeFolder(), "/Volumes/Other Disk/Users/someone");
    EXPECT_EQ(paths.userApplicationsFolder(),
              "/Volumes/Other Disk/Users/someone/.local/share/applications");
}

TEST(LinuxSearchPaths, TheHomeFolderLiesOnTheTargetVolumeWhateverTheRunningSystemsIs) {
    auto values = someone();
    values.targetVolume = "/Volumes/Other Disk";
    for (const auto& home :
         {std::optional<std::string>("/Volumes/Other Disk/home/someone"),
          std::optional<std::string>("/home/somebody else"), std::optional<std::string>()}) {
        values.home = home;
        const LinuxSearchPaths paths(values);
        const SearchPaths& known = paths;
        EXPECT_EQ(known.homeFolder(), "/Volumes/Other Disk/Users/someone");
        EXPECT_EQ(known.userPreferencesFolder(), *known.homeFolder() + "/Library/Preferences");
        EXPECT_EQ(known.userApplicationSupportFolder(),
                  *known.homeFolder() + "/Library/Application Support");
        EXPECT_EQ(known.asSeenOnTargetVolume(*known.homeFolder()), "/Users/someone");
    }
}

TEST(LinuxSearchPaths, AUserWithoutAHomeFolderHasNone) {
    auto values = someone();
    values.home.reset();
    EXPECT_EQ(LinuxSearchPaths(values).homeFolder(), std::nullopt);
}

struct VolumeRow {
    const char* name;
    std::string path;
    std::string onVolume;
};

class LinuxSearchPathsPathOnTargetVolume : public testing::TestWithParam<VolumeRow> {};

TEST_P(LinuxSearchPathsPathOnTargetVolume, IsTheRealPath) {
    EXPECT_EQ(onVolume("/vol").onTargetVolume(GetParam().path), GetParam().onVolume);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, LinuxSearchPathsPathOnTargetVolume,
    testing::Values(VolumeRow{"Absolute", "/Applications/CS6", "/vol/Applications/CS6"},
                    VolumeRow{"Relative", "Applications", "/vol/Applications"},
                    VolumeRow{"Root", "/", "/vol"}, VolumeRow{"Empty", "", ""},
                    VolumeRow{"DoubledSeparators", "//a///b//", "/vol/a/b"},
                    VolumeRow{"ParentOfTheRoot", "/../../etc/passwd", "/vol/etc/passwd"},
                    VolumeRow{"ParentBelow", "/a/b/../c", "/vol/a/c"},
                    VolumeRow{"ParentsBeyondTheRoot", "/a/../../etc", "/vol/etc"},
                    VolumeRow{"ParentAtTheEnd", "/a/..", "/vol"},
                    VolumeRow{"RelativeParent", "../etc", "/vol/etc"},
                    VolumeRow{"DotsInNames", "/..a/b../...", "/vol/..a/b../..."},
                    VolumeRow{"NotUtf8", "/caf\xE9", "/vol/caf\xE9"}),
    [](const auto& row) { return row.param.name; });

TEST(LinuxSearchPaths, TheVolumesOwnSystemSeesPathsWithoutThePrefix) {
    const auto paths = onVolume("/vol");
    EXPECT_EQ(paths.asSeenOnTargetVolume("/vol/Applications/Tool.app"), "/Applications/Tool.app");
    EXPECT_EQ(paths.asSeenOnTargetVolume("/vol"), "/");
    EXPECT_EQ(paths.asSeenOnTargetVolume("/volume/a"), "/volume/a");
    EXPECT_EQ(paths.asSeenOnTargetVolume("/picked/folder"), "/picked/folder");
    EXPECT_EQ(paths.asSeenOnTargetVolume(""), "");
}

TEST(LinuxSearchPaths, TheRootCanBeTheTargetVolume) {
    const auto paths = onVolume("/");
    EXPECT_EQ(paths.localApplicationsFolder(), "/Applications");
    EXPECT_EQ(paths.userPreferencesFolder(), "/Users/someone/Library/Preferences");
    EXPECT_EQ(paths.asSeenOnTargetVolume("/Applications"), "/Applications");
}

TEST(LinuxSearchPaths, WithoutAHomeFolderThereAreNoUserFolders) {
    LinuxSearchPaths::Values values;
    values.loginName = "someone";
    const LinuxSearchPaths paths(values);
    EXPECT_EQ(paths.userPreferencesFolder(), std::nullopt);
    EXPECT_EQ(paths.userApplicationSupportFolder(), std::nullopt);
    EXPECT_EQ(paths.userApplicationsFolder(), std::nullopt);
}

TEST(LinuxSearchPathsFromEnvironment, TakesHomeAndLanguages) {
    const auto paths = fromEnvironment({{"HOME", "/home/me//"}, {"LANGUAGE", "de:en"}});
    EXPECT_EQ(paths.homeFolder(), "/home/me");
    EXPECT_THAT(paths.preferredLanguages(), ElementsAre("de", "en"));
}

TEST(LinuxSearchPathsFromEnvironment, AnUnusableHomeIsReplacedByWhatTheSystemKnows) {
    const passwd* entry = ::getpwuid(::geteuid());
    if (entry == nullptr || entry->pw_dir[0] != '/') GTEST_SKIP() << "this user has no home folder";
    const std::string home = entry->pw_dir;
    EXPECT_EQ(fromEnvironment({}).homeFolder(), home);
    EXPECT_EQ(fromEnvironment({{"HOME", ""}}).homeFolder(), home);
    EXPECT_EQ(fromEnvironment({{"HOME", "relative"}}).homeFolder(), home);
}

TEST(LinuxSearchPathsFromEnvironment, TheLoginNameIsTheSystemsWhateverTheEnvironmentSays) {
    EXPECT_EQ(fromEnvironment({{"USER", "mallory"}, {"LOGNAME", "mallory"}}).loginName(),
              systemsLoginName());
}

TEST(LinuxSearchPathsFromEnvironment, TakesTheUsersDataFolderWhenItIsAbsolute) {
    EXPECT_EQ(
        fromEnvironment({{"HOME", "/h"}, {"XDG_DATA_HOME", "/data/"}}).userApplicationsFolder(),
        "/data/applications");
    EXPECT_EQ(fromEnvironment({{"HOME", "/h"}, {"XDG_DATA_HOME", "data"}}).userApplicationsFolder(),
              "/h/.local/share/applications");
}

TEST(LinuxSearchPathsFromEnvironment, AnEmptyTargetVolumeIsNone) {
    EXPECT_EQ(fromEnvironment({{targetVolumeVariable, ""}}).localApplicationsFolder(),
              "/Applications");
}

TEST(LinuxSearchPathsFromEnvironment, TheTargetVolumesPathIsMadeAbsoluteAndClean) {
    const ScratchFolder disk;
    disk.addFolder("a volume");
    for (const char* ending :
         {"a volume", "a volume/", "a volume//", "./a volume/.", "x/../a volume"})
        EXPECT_EQ(fromEnvironment({{targetVolumeVariable, disk.at(ending)}}).onTargetVolume("/a"),
                  disk.at("a volume/a"))
            << ending;
    const auto relative = std::filesystem::relative(disk.at("a volume")).string();
    EXPECT_EQ(fromEnvironment({{targetVolumeVariable, relative}}).onTargetVolume("/a"),
              disk.at("a volume/a"));
    EXPECT_EQ(fromEnvironment({{targetVolumeVariable, "/"}}).onTargetVolume("/a"), "/a");
}

TEST(LinuxSearchPathsFromEnvironment, TheUsersFolderOnAVolumeIsThatOfTheLoginName) {
    const ScratchFolder disk;
    EXPECT_EQ(fromEnvironment({{"HOME", "/home/me"}, {targetVolumeVariable, disk.path()}})
                  .userPreferencesFolder(),
              disk.at("Users/" + systemsLoginName() + "/Library/Preferences"));
}

TEST(LinuxSearchPathsFromEnvironment, ATargetVolumeThatIsNoFolderIsAnError) {
    const ScratchFolder disk;
    disk.add("file", "");
    const auto errorFor = [&](const std::string& path) {
        return LinuxSearchPaths::fromEnvironment(environmentOf({{targetVolumeVariable, path}}))
            .error();
    };
    EXPECT_EQ(errorFor(disk.at("missing")), std::errc::no_such_file_or_directory);
    EXPECT_EQ(errorFor(disk.at("file")), std::errc::not_a_directory);
    EXPECT_EQ(errorFor(disk.at("file/below")), std::errc::not_a_directory);
}

TEST(LinuxSearchPathsForHomeOf, TheFoldersAreThatUsersAndTheLoginNameIsNot) {
    const auto paths = LinuxSearchPaths::forHomeOf(
        {4711, "ann", "/home/ann"},
        environmentOf({{"HOME", "/root"}, {"XDG_DATA_HOME", "/root/data"}}));
    ASSERT_TRUE(paths);
    EXPECT_EQ(paths.value().homeFolder(), "/home/ann");
    EXPECT_EQ(paths.value().userApplicationsFolder(), "/home/ann/.local/share/applications");
    EXPECT_EQ(paths.value().loginName(), systemsLoginName());
}

TEST(LinuxSearchPathsForHomeOf, OnATargetVolumeTheHomeIsThatUsersFolder) {
    const ScratchFolder volume;
    const auto paths = LinuxSearchPaths::forHomeOf(
        {4711, "ann", ""}, environmentOf({{targetVolumeVariable, volume.path()}}));
    ASSERT_TRUE(paths);
    EXPECT_EQ(paths.value().homeFolder(), volume.path() + "/Users/ann");
    EXPECT_FALSE(paths.value().isProtected(volume.path() + "/Users/ann/x"));
    EXPECT_TRUE(paths.value().isProtected(volume.path() + "/Users/bob/x"));
}

}  // namespace
}  // namespace installer::test
