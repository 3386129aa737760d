#include <fstream>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "privileged/system/AdminGroup.h"
#include "tests/privileged/system/OwnAccounts.h"

namespace installer::test {
namespace {

// The group file read by hand, as this test's own source of truth.
std::map<std::string, gid_t> groupsOfTheSystem() {
    std::map<std::string, gid_t> groups;
    std::ifstream file("/etc/group");
    for (std::string line; std::getline(file, line);) {
        const auto nameEnd = line.find(':');
        const auto numberStart = line.find(':', nameEnd + 1) + 1;
        groups.emplace(line.substr(0, nameEnd),
                       static_cast<gid_t>(std::stoul(line.substr(numberStart))));
    }
    return groups;
}

/// A process looks once.
std::string groupOfANewProcess() {
    return inChild([] { return std::to_string(administratorsGroup()); });
}

TEST(AdminGroup, IsTheFirstThatExistsOfTheUsualNamesElseRoots) {
    const auto groups = groupsOfTheSystem();
    gid_t expected = 0;
    for (const char* name : {"wheel", "sudo", "admin"}) {
        if (const auto found = groups.find(name); found != groups.end()) expected = found->second;
    }
    EXPECT_EQ(groupOfANewProcess(), std::to_string(expected));
}

TEST(AdminGroup, IsLookedForInTheOrderAdminSudoWheel) {
    const auto groupAmong = [](const std::string& groups) {
        return withAccounts("root:x:0:0::/root:\n", groups,
                            [] { return std::to_string(administratorsGroup()); });
    };
    EXPECT_EQ(groupAmong("root:x:0:\nwheel:x:4001:\nsudo:x:4002:\nadmin:x:4003:\n"), "4003");
    EXPECT_EQ(groupAmong("root:x:0:\nwheel:x:4001:\nsudo:x:4002:\n"), "4002");
    EXPECT_EQ(groupAmong("root:x:0:\nwheel:x:4001:\n"), "4001");
    EXPECT_EQ(groupAmong("root:x:0:\nstaff:x:50:\n"), "0");
}

}  // namespace
}  // namespace installer::test
