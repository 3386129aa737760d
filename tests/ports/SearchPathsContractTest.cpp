// What every answer about the machine's and the user's folders promises.

#include <optional>
#include <string>
#include <vector>

#include "linux/files/LinuxSearchPaths.h"
#include "tests/ports/Adapter.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

/// Search paths of the user "tester".
class SearchPathsScene {
  public:
    virtual ~SearchPathsScene() = default;
    /// With the home /Users/tester, or none; on the volume, or the running system where it is
    /// empty.
    [[nodiscard]] virtual std::unique_ptr<SearchPaths> paths(bool hasHome,
                                                             const std::string& volume) = 0;
};

namespace {

class LinuxFolders : public SearchPathsScene {
  public:
    std::unique_ptr<SearchPaths> paths(bool hasHome, const std::string& volume) override {
        LinuxSearchPaths::Values values;
        if (hasHome) values.home = "/Users/tester";
        if (!volume.empty()) values.targetVolume = volume;
        values.loginName = "tester";
        values.languages = {"de", "en"};
        return std::make_unique<LinuxSearchPaths>(values);
    }
};

class FoldersByName : public SearchPathsScene {
  public:
    std::unique_ptr<SearchPaths> paths(bool hasHome, const std::string& volume) override {
        auto paths = std::make_unique<FakeSearchPaths>();
        if (!hasHome) paths->home.reset();
        paths->volume = volume;
        paths->languages = {"de", "en"};
        return paths;
    }
};

template <class Folders>
std::unique_ptr<SearchPathsScene> makeSearchPathsScene() {
    return std::make_unique<Folders>();
}

}  // namespace

class SearchPathsContract : public Contract<SearchPathsScene> {
  protected:
    [[nodiscard]] std::unique_ptr<SearchPaths> onRunningSystem() const {
        return scene_->paths(true, "");
    }
    [[nodiscard]] std::unique_ptr<SearchPaths> onVolume() const {
        return scene_->paths(true, "/Volumes/Other");
    }
};

TEST_P(SearchPathsContract, TheFoldersOfTheRunningSystemHaveTheirPlainPaths) {
    const auto paths = onRunningSystem();
    EXPECT_EQ(paths->localApplicationSupportFolder(), "/Library/Application Support");
    EXPECT_EQ(paths->localApplicationsFolder(), "/Applications");
    EXPECT_EQ(paths->homeFolder(), "/Users/tester");
    EXPECT_EQ(paths->userApplicationSupportFolder(), "/Users/tester/Library/Application Support");
    EXPECT_EQ(paths->userPreferencesFolder(), "/Users/tester/Library/Preferences");
    EXPECT_EQ(paths->loginName(), "tester");
    EXPECT_EQ(paths->preferredLanguages(), (std::vector<std::string>{"de", "en"}));
}

TEST_P(SearchPathsContract, EveryFolderLiesOnTheTargetVolume) {
    const auto paths = onVolume();
    const std::string home = "/Volumes/Other/Users/tester";
    EXPECT_EQ(paths->localApplicationSupportFolder(), "/Volumes/Other/Library/Application Support");
    EXPECT_EQ(paths->localApplicationsFolder(), "/Volumes/Other/Applications");
    EXPECT_EQ(paths->homeFolder(), home);
    EXPECT_EQ(paths->userApplicationSupportFolder(), home + "/Library/Application Support");
    EXPECT_EQ(paths->userPreferencesFolder(), home + "/Library/Preferences");
}

TEST_P(SearchPathsContract, AUserWithoutAHomeHasNoFolders) {
    const auto paths = scene_->paths(false, "");
    EXPECT_EQ(paths->homeFolder(), std::nullopt);
    EXPECT_EQ(paths->userApplicationSupportFolder(), std::nullopt);
    EXPECT_EQ(paths->userPreferencesFolder(), std::nullopt);
}

TEST_P(SearchPathsContract, OnTheTargetVolumeEveryUserHasAHome) {
    EXPECT_EQ(scene_->paths(false, "/Volumes/Other")->homeFolder(), "/Volumes/Other/Users/tester");
}

TEST_P(SearchPathsContract, PathsAreMeantOnTheTargetVolumeAndCannotLeaveIt) {
    const auto paths = onVolume();
    EXPECT_EQ(paths->onTargetVolume("/a/b"), "/Volumes/Other/a/b");
    EXPECT_EQ(paths->onTargetVolume("/a/../b"), "/Volumes/Other/b");
    EXPECT_EQ(paths->onTargetVolume("/../../etc"), "/Volumes/Other/etc");
    EXPECT_EQ(paths->onTargetVolume("/"), "/Volumes/Other");
    EXPECT_EQ(paths->onTargetVolume(""), "");
    EXPECT_EQ(onRunningSystem()->onTargetVolume("/a/../b"), "/a/../b");
}

TEST_P(SearchPathsContract, TheVolumesOwnSystemSeesPathsWithoutTheVolume) {
    const auto paths = onVolume();
    EXPECT_EQ(paths->asSeenOnTargetVolume("/Volumes/Other/a/b"), "/a/b");
    EXPECT_EQ(paths->asSeenOnTargetVolume("/Volumes/Other"), "/");
    EXPECT_EQ(paths->asSeenOnTargetVolume("/Volumes/Others/a"), "/Volumes/Others/a");
    EXPECT_EQ(paths->asSeenOnTargetVolume("/a/b"), "/a/b");
    EXPECT_EQ(onRunningSystem()->asSeenOnTargetVolume("/a/b"), "/a/b");
}

INSTANTIATE_TEST_SUITE_P(
    SearchPaths, SearchPathsContract,
    testing::Values(Adapter<SearchPathsScene>{"Linux", makeSearchPathsScene<LinuxFolders>},
                    Adapter<SearchPathsScene>{"Fake", makeSearchPathsScene<FoldersByName>}),
    AdapterName());

}  // namespace installer::test
