#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/HostDiscovery.h"
#include "hosts/HostLists.h"
#include "product/RtfResource.h"
#include "steps/licence/LicenseModel.h"
#include "tests/support/FailingFileManager.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/FaultSweep.h"

// Every operation on files of the readers before a run fails in turn, until one passes untouched.

namespace installer::test {
namespace {

using namespace std::string_literals;
using testing::IsEmpty;
using testing::IsSubsetOf;
using testing::SizeIs;

const std::string preferences = "/Users/tester/Library/Preferences/";

/// Calls `use` with a platform whose files fail as planned, for everything that can fail of what
/// it does when nothing fails.
template <class Use>
int failInTurn(FakePlatform& fake, const Use& use) {
    const auto run = [&](Faults& faults) {
        FailingFileManager files(fake.memory, faults);
        Platform platform = platformWith(files, fake);
        use(platform);
    };
    Faults none;
    run(none);
    const std::vector<Faults::Call>& calls = none.calls();
    int injected = 0;
    for (std::size_t place = 1; place <= calls.size(); ++place) {
        for (const Lasting lasting : {Lasting::once, Lasting::itsKind, Lasting::everything}) {
            for (const FaultPlan& plan : faultsOf(calls[place - 1], place, lasting)) {
                SCOPED_TRACE(described(plan, calls[place - 1]));
                Faults faults(plan, calls.size() * 8);
                EXPECT_NO_THROW(run(faults));
                EXPECT_FALSE(faults.hits().empty());
                ++injected;
            }
        }
    }
    return injected;
}

class HostDiscoveryFaults : public testing::Test {
  protected:
    void addApplication(const std::string& name) {
        fake_.memory.addFolder("/Applications/" + name + "/" + name + ".app");
    }
    void addPathsFile(const std::string& name) {
        addApplication(name);
        fake_.memory.addFile(preferences + name + " Paths", "/Applications/" + name + "\0"s);
    }
    void addSettingsFile(const std::string& name) {
        addApplication(name);
        fake_.memory.addFolder(preferences + name + " Settings");
    }
    static std::vector<std::string> foundOn(Platform& platform) {
        std::vector<std::string> names;
        for (const HostModel& host : foundHosts(HostDiscovery(platform).discoverHosts())) {
            const auto* photoshop = host.as<PhotoshopHostModel>();
            names.push_back(host.hostName() + " " + photoshop->appPath() + " " +
                            photoshop->plugInPath());
        }
        return names;
    }

    FakePlatform fake_;
};

TEST_F(HostDiscoveryFaults, GiveFewerHostsAndTheOthersAsTheyAre) {
    addPathsFile("Adobe Photoshop CS6");
    addPathsFile("Adobe Photoshop CC 2015");
    addSettingsFile("Adobe Photoshop CC 2019");
    addSettingsFile("Adobe Photoshop CC 2020");
    const std::vector<std::string> all = foundOn(fake_.platform);
    ASSERT_THAT(all, SizeIs(4));
    bool someAreFewer = false;
    const int injected = failInTurn(fake_, [&](Platform& platform) {
        const std::vector<std::string> found = foundOn(platform);
        EXPECT_THAT(found, IsSubsetOf(all));
        someAreFewer = someAreFewer || found.size() < all.size();
    });
    EXPECT_TRUE(someAreFewer);
    EXPECT_GT(injected, 100);
}

TEST_F(HostDiscoveryFaults, AFailedReadOfTheLicenseGivesItWholeOrNotAtAll) {
    fake_.bundle.resources["license.txt"] = "/license.txt";
    fake_.memory.addFile("/license.txt", "All rights reserved");
    failInTurn(fake_, [](Platform& platform) {
        const auto text = LicenseModel(platform).licenseText();
        EXPECT_TRUE(!text || *text == "All rights reserved");
    });
}

TEST_F(HostDiscoveryFaults, AFailedReadOfAPageIsLogged) {
    fake_.bundle.resources["page.rtf"] = "/page.rtf";
    fake_.memory.addFile("/page.rtf", "{\\rtf1 text}");
    failInTurn(fake_, [&](Platform& platform) {
        fake_.log.lines.clear();
        const bool isThere = rtfResource(platform, "page").has_value();
        EXPECT_NE(isThere, !fake_.log.lines.empty());
    });
}

}  // namespace
}  // namespace installer::test
