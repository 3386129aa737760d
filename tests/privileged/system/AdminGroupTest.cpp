#include <fstream>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "privileged/system/AdminGroup.h"

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

TEST(AdminGroup, IsTheFirstThatExistsOfTheUsualNamesElseRoots) {
    const auto groups = groupsOfTheSystem();
    gid_t expected = 0;
    for (const char* name : {"wheel", "sudo", "admin"}) {
        if (const auto found = groups.find(name); found != groups.end()) expected = found->second;
    }
    EXPECT_EQ(administratorsGroup(), expected);
}

}  // namespace
}  // namespace installer::test
