#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/values/Paths.h"
#include "install/plan/InstallPlan.h"
#include "tests/install/engine/EngineParts.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const std::string plannedSupport = "/Library/Application Support";
const std::string product = plannedSupport + "/Acme/Filters 2";
const std::string plannedPlugIns = plannedSupport + "/Adobe/Plug-Ins/CC";
const std::string photoshop2019 = "/Applications/Adobe Photoshop CC 2019";
const std::string photoshop2020 = "/Applications/Adobe Photoshop CC 2020";

/// An item of the disk mirror that goes to the same path on the running system.
PlannedItem mirrored(const std::string& path, InstallRule rule, std::uint64_t bytes) {
    return {.source = mirror + path,
            .destination = path,
            .rule = rule,
            .host = std::nullopt,
            .isPackage = rule == InstallRule::mirrorPackage,
            .bytes = bytes};
}

/// A regular file for a host.
PlannedItem hostFile(const std::string& source, const std::string& destination, InstallRule rule,
                     std::size_t host, std::uint64_t bytes) {
    return {.source = payload + source,
            .destination = destination,
            .rule = rule,
            .host = host,
            .isPackage = false,
            .bytes = bytes};
}

PlannedItem hostPackage(const std::string& source, const std::string& destination, InstallRule rule,
                        std::size_t host, std::uint64_t bytes) {
    PlannedItem item = hostFile(source, destination, rule, host, bytes);
    item.isPackage = true;
    return item;
}

class InstallPlanTest : public testing::Test {
  protected:
    InstallPlan plan(const std::vector<HostModel>& hosts = {}) {
        return makeInstallPlan(fake.platform, hosts);
    }
    HostModel photoshop(const std::string& year) {
        return PhotoshopHostModel::initWithHostName(fake.platform, "Adobe Photoshop CC " + year);
    }
    HostModel customFolder(const std::string& path) {
        return UnknownHostModel(fake.platform, path);
    }
    std::vector<std::string> destinations(const std::vector<HostModel>& hosts = {}) {
        std::vector<std::string> paths;
        for (const PlannedItem& item : plan(hosts).items) paths.push_back(item.destination);
        return paths;
    }
    void makeUnreadable(const std::string& folder) {
        fake.files.setFault([folder](const RecordingFileManager::Operation& operation) {
            return operation.back() == folder ? std::make_error_code(std::errc::permission_denied)
                                              : std::error_code();
        });
    }

    FakePlatform fake;
    MemoryFileManager& memory = fake.memory;
};

TEST_F(InstallPlanTest, RefusesWhatWouldGoIntoFoldersOfTheSystemAndKeepsTheRest) {
    memory.addFile(mirror + "/usr/lib/Evil.plugin/x");
    memory.addFile(mirror + "/usr/local/Fine.plugin/x");
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/x.service");
    const InstallPlan planned = plan({customFolder("/etc/systemd/system.control"),
                                      customFolder("/Library/../etc"), customFolder("/Users/other"),
                                      customFolder("/Users/tester"), customFolder("/Plug-Ins")});
    const auto pathsOf = [](const std::vector<PlannedItem>& items) {
        std::vector<std::string> paths;
        for (const PlannedItem& item : items) paths.push_back(item.destination);
        return paths;
    };
    EXPECT_THAT(
        pathsOf(planned.items),
        ElementsAre("/usr/local/Fine.plugin", "/Users/tester/x.service", "/Plug-Ins/x.service"));
    EXPECT_THAT(pathsOf(planned.refused),
                ElementsAre("/usr/lib/Evil.plugin", "/etc/systemd/system.control/x.service",
                            "/Library/../etc/x.service", "/Users/other/x.service"));
    EXPECT_THAT(planned.itemsOf(4), SizeIs(1));
    EXPECT_THAT(planned.itemsOf(0), IsEmpty());
}

TEST_F(InstallPlanTest, RefusesTheFoldersOfTheTargetVolumesOwnSystem) {
    fake.searchPaths.volume = "/Volumes/Other";
    memory.addFile(mirror + "/usr/lib/Evil.plugin/x");
    memory.addFile(mirror + "/Applications/Tool.app/x");
    const InstallPlan planned = plan();
    ASSERT_THAT(planned.refused, SizeIs(1));
    EXPECT_EQ(planned.refused.front().destination, "/Volumes/Other/usr/lib/Evil.plugin");
    EXPECT_THAT(destinations(), ElementsAre("/Volumes/Other/Applications/Tool.app"));
}

TEST_F(InstallPlanTest, ListsTheMirrorsPackagesThenTheProductFoldersThenEachHost) {
    memory.addFile(mirror + product + "/Presets/Soft/a", "12");
    memory.addFile(mirror + product + "/Presets/.hidden", "345");
    memory.addFile(mirror + product + "/guide.txt", "1234");
    memory.addFile(mirror + product + "/Engine.bundle/x", "12345");
    memory.addFile(mirror + plannedSupport + "/Acme/Extras/notes.txt", "123456");
    memory.addFile(mirror + "/Applications/Tool.app/Contents/x", "1234567");
    memory.addFile(mirror + "/Applications/Tool.app/Contents/Inner.app/x", "1");
    memory.addFile(payload + "/PHOTOSHOP/Presets/run.jsx", "12345678");
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x", "123456789");
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/lib/extra.8bf", "1234567890");
    const std::vector<HostModel> hosts = {photoshop("2019"), customFolder("/My Plug-Ins")};

    const InstallPlan planned = plan(hosts);

    EXPECT_THAT(
        planned.items,
        ElementsAre(
            mirrored(product + "/Engine.bundle", InstallRule::mirrorPackage, 5),
            mirrored("/Applications/Tool.app", InstallRule::mirrorPackage, 8),
            mirrored(product + "/Presets", InstallRule::productFolder, 5),
            mirrored(product + "/guide.txt", InstallRule::productFolder, 4),
            mirrored(plannedSupport + "/Acme/Extras/notes.txt", InstallRule::productFolder, 6),
            hostFile("/PHOTOSHOP/Presets/run.jsx", photoshop2019 + "/Presets/run.jsx",
                     InstallRule::hostApplication, 0, 8),
            hostPackage("/PHOTOSHOP_PLUGINS/F.plugin", plannedPlugIns + "/F.plugin",
                        InstallRule::hostPlugIns, 0, 9),
            hostFile("/PHOTOSHOP_PLUGINS/lib/extra.8bf", plannedPlugIns + "/lib/extra.8bf",
                     InstallRule::hostPlugIns, 0, 10),
            hostPackage("/PHOTOSHOP_PLUGINS/F.plugin", "/My Plug-Ins/F.plugin",
                        InstallRule::hostPlugIns, 1, 9),
            hostFile("/PHOTOSHOP_PLUGINS/lib/extra.8bf", "/My Plug-Ins/lib/extra.8bf",
                     InstallRule::hostPlugIns, 1, 10)));
    EXPECT_EQ(planned.hosts, hosts);
    EXPECT_EQ(planned.totalBytes(), 5U + 8 + 5 + 4 + 6 + 8 + 9 + 10 + 9 + 10);
    EXPECT_TRUE(planned.hasPayload);
    EXPECT_EQ(planned.payloadFolder, payload);
    EXPECT_THAT(planned.leftOut, IsEmpty());
    EXPECT_THAT(planned.mirrorItems(), SizeIs(5));
    EXPECT_THAT(planned.itemsOf(0), SizeIs(3));
    EXPECT_EQ(planned.itemsOf(0).front().destination, photoshop2019 + "/Presets/run.jsx");
    EXPECT_THAT(planned.itemsOf(1), SizeIs(2));
    EXPECT_EQ(planned.itemsOf(1).back().destination, "/My Plug-Ins/lib/extra.8bf");
    EXPECT_THAT(planned.itemsOf(2), IsEmpty());
}

TEST_F(InstallPlanTest, ChangesNothingAndDoesNotLookAtDestinations) {
    memory.addFile(mirror + "/Applications/Tool.app/x");
    const InstallPlan before = plan();
    memory.addFile("/Applications/Tool.app/x", "newer");
    EXPECT_EQ(plan().items, before.items);
    EXPECT_THAT(fake.journal, IsEmpty());
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

TEST_F(InstallPlanTest, DestinationsLieOnTheTargetVolume) {
    fake.searchPaths.volume = "/Volumes/Other";
    memory.addFile(mirror + "/Applications/Tool.app/x");
    memory.addFile(mirror + product + "/guide.txt");
    memory.addFile(payload + "/PHOTOSHOP/about.txt");
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x");
    memory.addFile(payload + "/LIGHTROOM/a");
    const std::string volume = "/Volumes/Other";
    EXPECT_THAT(
        destinations({photoshop("2019"), LightRoomHostModel(fake.platform, "Lightroom"),
                      // A folder that the user picked is the real one already.
                      customFolder("/Volumes/Pictures/My Plug-Ins")}),
        ElementsAre(volume + "/Applications/Tool.app", volume + product + "/guide.txt",
                    volume + photoshop2019 + "/about.txt", volume + plannedPlugIns + "/F.plugin",
                    volume + "/Users/tester/Library/Application Support/Adobe/Lightroom/a",
                    "/Volumes/Pictures/My Plug-Ins/F.plugin"));
}

TEST_F(InstallPlanTest, TwoHostsThatShareAPlugInFolderHaveAnItemEach) {
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x", "123");
    const InstallPlan planned = plan({photoshop("2019"), photoshop("2020")});
    EXPECT_THAT(planned.items,
                ElementsAre(hostPackage("/PHOTOSHOP_PLUGINS/F.plugin", plannedPlugIns + "/F.plugin",
                                        InstallRule::hostPlugIns, 0, 3),
                            hostPackage("/PHOTOSHOP_PLUGINS/F.plugin", plannedPlugIns + "/F.plugin",
                                        InstallRule::hostPlugIns, 1, 3)));
    EXPECT_EQ(planned.totalBytes(), 6U);
}

TEST_F(InstallPlanTest, TheSameHostTwiceIsTwoHosts) {
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x");
    const HostModel host = customFolder("/My Plug-Ins");
    const InstallPlan planned = plan({host, host});
    EXPECT_THAT(planned.items, SizeIs(2));
    EXPECT_THAT(planned.itemsOf(1), SizeIs(1));
}

TEST_F(InstallPlanTest, AHostThatIsNotSelectedIsPlannedWhenTheCallerPassesIt) {
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x");
    const HostModel host = photoshop("2020");
    host.setHostIsSelected(false);
    EXPECT_THAT(destinations({host}), ElementsAre(plannedPlugIns + "/F.plugin"));
}

TEST_F(InstallPlanTest, ACustomFolderWithAnEmptyPathHasNoItems) {
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x");
    const InstallPlan planned = plan({customFolder(""), customFolder("/My Plug-Ins/")});
    EXPECT_THAT(planned.itemsOf(0), IsEmpty());
    EXPECT_THAT(planned.items,
                ElementsAre(hostPackage("/PHOTOSHOP_PLUGINS/F.plugin", "/My Plug-Ins/F.plugin",
                                        InstallRule::hostPlugIns, 1, 0)));
}

TEST_F(InstallPlanTest, LightroomsFilesGoToTheUsersFolder) {
    memory.addFile(payload + "/LIGHTROOM/Modules/F.lrplugin/x", "12");
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x");
    const std::string folder = "/Users/tester/Library/Application Support/Adobe/Lightroom";
    const std::string item = "/Modules/F.lrplugin";
    const HostModel lightroom = LightRoomHostModel(fake.platform, "Lightroom");
    EXPECT_THAT(plan({lightroom}).items, ElementsAre(hostPackage("/LIGHTROOM" + item, folder + item,
                                                                 InstallRule::lightroom, 0, 2)));
    fake.searchPaths.home.reset();
    EXPECT_THAT(plan({lightroom}).items, IsEmpty());
}

TEST_F(InstallPlanTest, ApertureAndFireworksHaveNoItems) {
    memory.addFile(payload + "/PHOTOSHOP/about.txt");
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x");
    memory.addFile(payload + "/LIGHTROOM/a");
    const InstallPlan planned = plan({ApertureHostModel(fake.platform, "Aperture"),
                                      FireworksHostModel(fake.platform, "Adobe Fireworks CS6")});
    EXPECT_THAT(planned.hosts, SizeIs(2));
    EXPECT_THAT(planned.items, IsEmpty());
}

// A plain replacement of text, on purpose.
TEST_F(InstallPlanTest, EveryOccurrenceOfAFoldersPathIsReplaced) {
    fake.bundle.folder = "/U";
    const std::string files = "/U/Contents/Resources/files";
    memory.addFile(files + "/HD/Applications" + files + "/HD/Tool.app/x");
    memory.addFile(files + "/PHOTOSHOP_PLUGINS/a" + files + "/PHOTOSHOP_PLUGINS/F.plugin/x");
    EXPECT_THAT(destinations({customFolder("/to")}),
                ElementsAre("/Applications/Tool.app", "/to/a/to/F.plugin"));
}

TEST_F(InstallPlanTest, TheNameOfAnItemIsItsSourcesWhateverIsReplacedInItsPath) {
    fake.bundle.folder = "/U";
    const std::string files = "/U/Contents/Resources/files";
    memory.addFile(files + "/HD/X" + files + "/HD-Tool.app/x");
    EXPECT_THAT(destinations(), ElementsAre("/HD-Tool.app"));
}

TEST_F(InstallPlanTest, APackageInASubFolderOfAProductComesAgainWithItsFolder) {
    memory.addFile(mirror + product + "/Presets/View.app/x", "123");
    EXPECT_THAT(plan().items,
                ElementsAre(mirrored(product + "/Presets/View.app", InstallRule::mirrorPackage, 3),
                            mirrored(product + "/Presets", InstallRule::productFolder, 3)));
}

TEST_F(InstallPlanTest, LinksInAProductFolderAreItemsWithoutBytes) {
    memory.addLink(mirror + product + "/link", "guide.txt");
    EXPECT_THAT(plan().items,
                ElementsAre(mirrored(product + "/link", InstallRule::productFolder, 0)));
    EXPECT_THAT(plan().leftOut, IsEmpty());
}

TEST_F(InstallPlanTest, EachEntryThatIsLeftOutHasItsReason) {
    memory.addFile(payload + "/read me.txt");
    memory.addFile(payload + "/APERTURE/x");
    memory.addFile(payload + "/.DS_Store");
    memory.addFile(mirror + "/usr/local/lib/x");
    memory.addLink(mirror + "/Applications/link", "/etc");
    memory.addFile(mirror + "/.hidden/Tool.app/x");
    memory.addFile(mirror + plannedSupport + "/Acme/loose.txt");
    memory.addFile(mirror + product + "/.hidden");
    memory.addFile(payload + "/PHOTOSHOP/deep/.hidden");
    memory.addLink(payload + "/PHOTOSHOP/deep/link", "a");
    memory.addOther(payload + "/LIGHTROOM/fifo");
    const InstallPlan planned = plan({photoshop("2019")});
    EXPECT_THAT(
        planned.leftOut,
        ElementsAre(
            LeftOutEntry{payload + "/.DS_Store", LeftOutReason::hidden},
            LeftOutEntry{payload + "/read me.txt", LeftOutReason::unknownEntry},
            LeftOutEntry{payload + "/APERTURE", LeftOutReason::unknownEntry},
            LeftOutEntry{mirror + "/.hidden", LeftOutReason::hidden},
            LeftOutEntry{mirror + "/usr/local/lib/x", LeftOutReason::outsideProducts},
            LeftOutEntry{mirror + "/Applications/link", LeftOutReason::linkOrSpecialFile},
            LeftOutEntry{mirror + plannedSupport + "/Acme/loose.txt",
                         LeftOutReason::outsideProducts},
            LeftOutEntry{mirror + product + "/.hidden", LeftOutReason::hidden},
            LeftOutEntry{payload + "/PHOTOSHOP/deep/.hidden", LeftOutReason::hidden},
            LeftOutEntry{payload + "/PHOTOSHOP/deep/link", LeftOutReason::linkOrSpecialFile},
            LeftOutEntry{payload + "/LIGHTROOM/fifo", LeftOutReason::linkOrSpecialFile}));
    EXPECT_THAT(planned.items, IsEmpty());
}

TEST_F(InstallPlanTest, AnUnreadableFolderIsLeftOutAndTheRestIsPlanned) {
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/closed/a");
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x");
    makeUnreadable(payload + "/PHOTOSHOP_PLUGINS/closed");
    const InstallPlan planned = plan({customFolder("/to")});
    EXPECT_THAT(planned.leftOut, ElementsAre(LeftOutEntry{payload + "/PHOTOSHOP_PLUGINS/closed",
                                                          LeftOutReason::unreadableFolder}));
    EXPECT_THAT(destinations({customFolder("/to")}), ElementsAre("/to/F.plugin"));
}

TEST_F(InstallPlanTest, AnUnreadableTreeIsLeftOutWhole) {
    memory.addFile(mirror + "/Applications/Tool.app/x");
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x");
    makeUnreadable(mirror);
    EXPECT_THAT(plan().leftOut, ElementsAre(LeftOutEntry{mirror, LeftOutReason::unreadableFolder}));
    EXPECT_THAT(destinations({customFolder("/to")}), ElementsAre("/to/F.plugin"));
}

TEST_F(InstallPlanTest, WhatAPayloadThatCannotBeListedHoldsIsPlannedAllTheSame) {
    memory.addFile(mirror + "/Applications/Tool.app/x");
    makeUnreadable(payload);
    EXPECT_THAT(plan().leftOut,
                ElementsAre(LeftOutEntry{payload, LeftOutReason::unreadableFolder}));
    EXPECT_THAT(destinations(), ElementsAre("/Applications/Tool.app"));
}

TEST_F(InstallPlanTest, AnEmptyPayloadGivesAnEmptyPlan) {
    memory.addFolder(payload);
    const InstallPlan planned = plan({photoshop("2019")});
    EXPECT_TRUE(planned.hasPayload);
    EXPECT_THAT(planned.items, IsEmpty());
    EXPECT_THAT(planned.leftOut, IsEmpty());
    EXPECT_EQ(planned.totalBytes(), 0U);
}

TEST_F(InstallPlanTest, AMissingPayloadIsToldApartFromAnEmptyOne) {
    const InstallPlan planned = plan({photoshop("2019")});
    EXPECT_FALSE(planned.hasPayload);
    EXPECT_EQ(planned.payloadFolder, payload);
    EXPECT_THAT(planned.items, IsEmpty());
    EXPECT_THAT(planned.leftOut, IsEmpty());
}

TEST_F(InstallPlanTest, WithoutTheMakersNameItsKeyNamesTheFolder) {
    fake.bundle.tables["installer"].clear();
    memory.addFile(mirror + plannedSupport + "/company_name/Filters 2/guide.txt");
    EXPECT_THAT(destinations(), ElementsAre(plannedSupport + "/company_name/Filters 2/guide.txt"));
}

TEST_F(InstallPlanTest, TellsTheProgressThatItGoesOnWithoutBytes) {
    struct Sink : ProgressSink {
        void bytesCopied(std::uint64_t bytes) override { calls.push_back(bytes); }
        std::vector<std::uint64_t> calls;
    };
    memory.addFile(mirror + "/Applications/Tool.app/x", "123");
    Sink sink;
    static_cast<void>(makeInstallPlan(fake.platform, {}, &sink));
    EXPECT_THAT(sink.calls, Not(IsEmpty()));
    EXPECT_THAT(sink.calls, testing::Each(0U));
}

TEST_F(InstallPlanTest, RulesAndReasonsHaveADescriptionEach) {
    for (const InstallRule rule :
         {InstallRule::mirrorPackage, InstallRule::productFolder, InstallRule::hostApplication,
          InstallRule::hostPlugIns, InstallRule::lightroom}) {
        EXPECT_FALSE(description(rule).empty());
    }
    for (const LeftOutReason reason :
         {LeftOutReason::hidden, LeftOutReason::unknownEntry, LeftOutReason::outsideProducts,
          LeftOutReason::linkOrSpecialFile, LeftOutReason::unreadableFolder}) {
        EXPECT_FALSE(description(reason).empty());
    }
}

}  // namespace
}  // namespace installer::test
