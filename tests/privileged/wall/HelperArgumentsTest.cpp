#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits.h>

#include "privileged/wall/HelperArguments.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::optional<HelperArguments> argumentsOf(const std::vector<const char*>& words) {
    return helperArguments(words);
}

TEST(HelperArguments, AreReadInAnyOrder) {
    const auto arguments = argumentsOf({"--into", "/a", "--home", "/home/ada", "--started-by",
                                        "sudo", "--into", "/b c", "--volume", "/mnt/disk"});
    ASSERT_TRUE(arguments);
    EXPECT_EQ(arguments->startedBy, StartedBy::sudo);
    EXPECT_EQ(arguments->home, "/home/ada");
    EXPECT_EQ(arguments->volume, "/mnt/disk");
    EXPECT_THAT(arguments->folders, ElementsAre("/a", "/b c"));
    EXPECT_EQ(argumentsOf({"--started-by", "polkit"}).value().startedBy, StartedBy::polkit);
}

TEST(HelperArguments, MayAllBeLeftAway) {
    const auto arguments = argumentsOf({});
    ASSERT_TRUE(arguments);
    EXPECT_EQ(arguments->startedBy, StartedBy::root);
    EXPECT_EQ(arguments->home, "");
    EXPECT_EQ(arguments->volume, "");
    EXPECT_THAT(arguments->folders, IsEmpty());
}

TEST(HelperArguments, AreRefusedIfOneIsUnknownOrHasNoValue) {
    for (const std::vector<const char*>& words :
         std::vector<std::vector<const char*>>{{"--into"},
                                               {"--into", "/a", "--into"},
                                               {"--other", "/a"},
                                               {"", "/a"},
                                               {"/a", "--into"},
                                               {"--started-by", "root"},
                                               {"--started-by", "su"},
                                               {"--started-by", ""}}) {
        EXPECT_FALSE(argumentsOf(words)) << words.front();
    }
}

TEST(HelperArguments, PassOverAPathThatIsNotPlain) {
    const std::string tooLong = "/" + std::string(PATH_MAX, 'x');
    for (const char* path : {"", "relative", "/a/../b", "/a//b", "/a/", "/./a", tooLong.c_str()}) {
        const auto arguments =
            argumentsOf({"--volume", path, "--home", path, "--into", path, "--into", "/good"});
        ASSERT_TRUE(arguments) << path;
        EXPECT_EQ(arguments->volume, "") << path;
        EXPECT_EQ(arguments->home, "") << path;
        EXPECT_THAT(arguments->folders, ElementsAre("/good")) << path;
    }
}

TEST(HelperArguments, OnlyTheFoldersOfTheRunMayBeTheRoot) {
    const auto arguments = argumentsOf({"--volume", "/", "--home", "/", "--into", "/"});
    ASSERT_TRUE(arguments);
    EXPECT_EQ(arguments->volume, "");
    EXPECT_EQ(arguments->home, "");
    EXPECT_THAT(arguments->folders, ElementsAre("/"));
}

}  // namespace
}  // namespace installer::test
