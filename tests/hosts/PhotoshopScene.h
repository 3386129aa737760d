#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "hosts/HostDiscovery.h"
#include "hosts/HostLists.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

inline const std::string preferences = "/Users/tester/Library/Preferences/";
inline const std::string adobeSupport = "/Users/tester/Library/Application Support/Adobe/";

inline std::vector<std::string> names(const std::vector<HostModel>& hosts) {
    std::vector<std::string> all;
    all.reserve(hosts.size());
    for (const HostModel& host : hosts) all.push_back(host.hostName());
    return all;
}

/// A machine on which Photoshop releases can be put.
class PhotoshopScene : public testing::Test {
  protected:
    /// A Photoshop whose application is there, with its paths file in the folder.
    void addPhotoshop(const std::string& name, const std::string& folder = preferences) {
        using namespace std::string_literals;
        const std::string application = "/Applications/" + name;
        fake_.memory.addFolder(application + "/" + name + ".app");
        fake_.memory.addFile(folder + name + " Paths", application + "\0"s);
    }

    FakePlatform fake_;
};

}  // namespace installer::test
