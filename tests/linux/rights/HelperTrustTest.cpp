#include <filesystem>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "linux/rights/HelperTrust.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

constexpr uid_t user = 12345;
constexpr uid_t neighbour = 12346;

/// A bundle of the user's own in a folder that everybody may write to, as in /tmp.
class HelperTrust : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: needs root to make other users' files";
        folder.add("bundle/MacOS/helper", "");
        ASSERT_EQ(::chmod(folder.path().c_str(), 01777), 0);
        for (const char* entry : {"bundle", "bundle/MacOS", "bundle/MacOS/helper"}) {
            give(entry, user);
            setMode(entry, 0755);
        }
    }
    void give(const std::string& entry, uid_t owner, gid_t group = 12345) const {
        ASSERT_EQ(::lchown((folder / entry).c_str(), owner, group), 0);
    }
    void setMode(const std::string& entry, mode_t mode) const {
        ASSERT_EQ(::chmod((folder / entry).c_str(), mode), 0);
    }
    [[nodiscard]] std::optional<std::string> untrusted() const {
        return whatOthersCanChange(folder / "bundle/MacOS/helper", user);
    }

    ScratchFolder folder;
};

TEST_F(HelperTrust, IsGivenToABundleThatBelongsToTheUserOrToRoot) {
    EXPECT_EQ(untrusted(), std::nullopt);
    for (const char* entry : {"bundle", "bundle/MacOS", "bundle/MacOS/helper"}) give(entry, 0);
    EXPECT_EQ(untrusted(), std::nullopt);
}

TEST_F(HelperTrust, EndsAtAnEntryThatBelongsToANeighbour) {
    for (const char* entry : {"bundle", "bundle/MacOS", "bundle/MacOS/helper"}) {
        give(entry, neighbour);
        EXPECT_EQ(untrusted(), folder / entry);
        give(entry, user);
    }
}

TEST_F(HelperTrust, EndsAtAnEntryThatOthersMayWriteTo) {
    for (const char* entry : {"bundle", "bundle/MacOS", "bundle/MacOS/helper"}) {
        for (const mode_t mode : {0777U, 0757U, 0775U}) {
            setMode(entry, mode);
            EXPECT_EQ(untrusted(), folder / entry) << mode;
        }
        setMode(entry, 0755);
    }
}

TEST_F(HelperTrust, EndsAtAFolderWithoutStickyBitThatEverybodyMayWriteTo) {
    ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
    EXPECT_EQ(untrusted(), folder.path());
}

TEST_F(HelperTrust, HoldsWhereRootsGroupMayWrite) {
    give("bundle", user, 0);
    setMode("bundle", 0775);
    EXPECT_EQ(untrusted(), std::nullopt);
}

TEST_F(HelperTrust, LooksAtWhereALinkLeads) {
    folder.add("foreign/helper", "");
    give("foreign", neighbour);
    std::filesystem::remove(folder / "bundle/MacOS/helper");
    std::filesystem::create_symlink("../../foreign/helper", folder / "bundle/MacOS/helper");
    give("bundle/MacOS/helper", user);
    EXPECT_EQ(untrusted(), folder / "foreign");
}

TEST_F(HelperTrust, IsNotGivenToAProgramThatIsMissing) {
    EXPECT_EQ(whatOthersCanChange(folder / "missing", user), folder / "missing");
}

}  // namespace
}  // namespace installer::test
