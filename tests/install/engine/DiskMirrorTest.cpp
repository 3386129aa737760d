#include <chrono>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/values/Paths.h"
#include "install/engine/DiskMirror.h"
#include "install/plan/InstallPlan.h"
#include "tests/install/engine/EngineParts.h"

namespace installer::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string supportFolder = "/Library/Application Support";

class DiskMirrorTest : public testing::Test {
  protected:
    DiskMirrorTest() {
        memory.addFolder("/Applications");
        memory.addFolder(supportFolder);
    }
    void install() { DiskMirror(fake.platform, engine.commands, engine.installer).installFiles(); }

    EngineParts engine;
    FakePlatform& fake = engine.fake;
    MemoryFileManager& memory = fake.memory;
    std::vector<std::string>& installed = engine.run.installedPaths;
};

TEST_F(DiskMirrorTest, APackageIsInstalledRegisteredAndFreedFromQuarantine) {
    memory.addFile(mirror + "/Applications/Tool.app/Contents/x", "x");
    install();
    EXPECT_THAT(
        engine.operations(),
        ElementsAre("copy " + mirror + "/Applications/Tool.app /Applications/Tool.app",
                    "/usr/sbin/chown -R tester:admin /Applications/Tool.app",
                    "/bin/chmod -R 0775 /Applications/Tool.app", "register /Applications/Tool.app",
                    "/usr/bin/xattr -dr com.apple.quarantine /Applications/Tool.app"));
    EXPECT_THAT(installed, ElementsAre("/Applications/Tool.app"));
}

TEST_F(DiskMirrorTest, WhatIsNoPackageOutsideTheProductFoldersIsNotInstalled) {
    memory.addFile(mirror + "/usr/local/lib/x");
    memory.addFile(mirror + "/file");
    memory.addFolder(mirror + "/empty");
    memory.addLink(mirror + "/Applications/link", "/etc");
    memory.addFile(mirror + supportFolder + "/Other Maker/Product/file");
    install();
    EXPECT_THAT(engine.operations(), IsEmpty());
}

TEST_F(DiskMirrorTest, HiddenEntriesAndPackagesInsidePackagesAreNoItemsOfTheirOwn) {
    memory.addFile(mirror + "/Applications/.Hidden.app/x");
    memory.addFile(mirror + "/.hidden/Tool.app/x");
    memory.addFile(mirror + "/Applications/Tool.app/Contents/Inner.app/x");
    install();
    EXPECT_THAT(installed, ElementsAre("/Applications/Tool.app"));
    EXPECT_TRUE(memory.exists("/Applications/Tool.app/Contents/Inner.app/x"));
}

TEST_F(DiskMirrorTest, RegistrationAndQuarantineAreSeenToEvenWhenTheItemFailed) {
    memory.addFile(mirror + "/Applications/Tool.app/x");
    failOperation(fake, "copy");
    fake.authorizations.works = [](const auto&) { return false; };
    install();
    EXPECT_TRUE(engine.run.fileOpErrorOccurred);
    EXPECT_THAT(installed, IsEmpty());
    EXPECT_THAT(
        engine.operations(),
        ElementsAre("copy " + mirror + "/Applications/Tool.app /Applications/Tool.app",
                    "/bin/cp -R " + mirror + "/Applications/Tool.app /Applications/Tool.app",
                    "register /Applications/Tool.app",
                    "/usr/bin/xattr -dr com.apple.quarantine /Applications/Tool.app"));
}

TEST_F(DiskMirrorTest, AfterARefusalNothingMoreIsCopiedAndPackagesAreStillRegistered) {
    memory.addFile(mirror + "/Applications/One.app/x");
    memory.addFile(mirror + "/Applications/Two.app/x");
    memory.addFile(mirror + supportFolder + "/Acme/Filters 2/guide.txt");
    refuseFromCommand(fake, 1);
    install();
    EXPECT_TRUE(engine.run.authDenied);
    EXPECT_THAT(installed, IsEmpty());
    EXPECT_THAT(
        engine.operations(),
        ElementsAre("copy " + mirror + "/Applications/One.app /Applications/One.app",
                    "/usr/sbin/chown -R tester:admin /Applications/One.app",
                    "register /Applications/One.app",
                    "/usr/bin/xattr -dr com.apple.quarantine /Applications/One.app",
                    "register /Applications/Two.app",
                    "/usr/bin/xattr -dr com.apple.quarantine /Applications/Two.app",
                    "createFolders " + supportFolder + "/Acme 0775",
                    "setAttributes " + supportFolder + "/Acme tester:admin 0775",
                    "createFolders " + supportFolder + "/Acme/Filters 2 0775",
                    "setAttributes " + supportFolder + "/Acme/Filters 2 tester:admin 0775"));
}

TEST_F(DiskMirrorTest, ARegistrationThatFailsIsOnlyLogged) {
    memory.addFile(mirror + "/Applications/Tool.app/x");
    fake.applications.status = -10811;
    install();
    EXPECT_THAT(fake.log.lines,
                Contains("LSRegisterURL returned -10811 for /Applications/Tool.app"));
    EXPECT_FALSE(engine.run.fileOpErrorOccurred);
    EXPECT_THAT(installed, ElementsAre("/Applications/Tool.app"));
}

TEST_F(DiskMirrorTest, ARegistrationThatSucceedsIsNotLogged) {
    memory.addFile(mirror + "/Applications/Tool.app/x");
    install();
    EXPECT_THAT(fake.log.lines, ElementsAre("Installing Tool.app"));
}

TEST_F(DiskMirrorTest, FilesOfAProductFolderAreInstalledAndFilesBesideItAreNot) {
    memory.addFile(mirror + supportFolder + "/Acme/loose.txt");
    memory.addFile(mirror + supportFolder + "/Acme/Filters 2/guide.txt", "guide");
    install();
    EXPECT_THAT(installed, ElementsAre(supportFolder + "/Acme/Filters 2/guide.txt"));
    EXPECT_FALSE(memory.exists(supportFolder + "/Acme/loose.txt"));
}

TEST_F(DiskMirrorTest, SubFoldersOfAProductFolderAreCopiedWholeAndReplaceWhatIsThere) {
    memory.addFile(mirror + supportFolder + "/Acme/Filters 2/Presets/Soft/a");
    memory.addFile(mirror + supportFolder + "/Acme/Filters 2/Presets/.hidden");
    memory.addFile(supportFolder + "/Acme/Filters 2/Presets/of the user");
    install();
    EXPECT_THAT(installed, ElementsAre(supportFolder + "/Acme/Filters 2/Presets"));
    EXPECT_TRUE(memory.exists(supportFolder + "/Acme/Filters 2/Presets/.hidden"));
    EXPECT_FALSE(memory.exists(supportFolder + "/Acme/Filters 2/Presets/of the user"));
}

TEST_F(DiskMirrorTest, APackageInAProductFolderIsInstalledOnceWithTheOtherPackages) {
    memory.addFile(mirror + supportFolder + "/Acme/Filters 2/Helper.app/x");
    install();
    EXPECT_THAT(installed, ElementsAre(supportFolder + "/Acme/Filters 2/Helper.app"));
}

TEST_F(DiskMirrorTest, APackageInASubFolderIsInstalledAndThenReplacedWithItsWholeFolder) {
    const std::string presets = supportFolder + "/Acme/Filters 2/Presets";
    memory.addFile(mirror + presets + "/View.app/x");
    install();
    EXPECT_THAT(installed, ElementsAre(presets + "/View.app", presets));
    EXPECT_THAT(
        engine.operations(),
        ElementsAre(
            "createFolders " + supportFolder + "/Acme/Filters 2 0775",
            "setAttributes " + supportFolder + "/Acme/Filters 2 tester:admin 0775",
            "createFolders " + presets + " 0775", "setAttributes " + presets + " tester:admin 0775",
            "copy " + mirror + presets + "/View.app " + presets + "/View.app",
            "/usr/sbin/chown -R tester:admin " + presets + "/View.app",
            "/bin/chmod -R 0775 " + presets + "/View.app", "register " + presets + "/View.app",
            "/usr/bin/xattr -dr com.apple.quarantine " + presets + "/View.app", "remove " + presets,
            "copy " + mirror + presets + " " + presets,
            "/usr/sbin/chown -R tester:admin " + presets, "/bin/chmod -R 0775 " + presets));
}

TEST_F(DiskMirrorTest, EveryProductFolderOfTheMakerIsInstalledInOrder) {
    memory.addFile(mirror + supportFolder + "/Acme/Zoom/z");
    memory.addFile(mirror + supportFolder + "/Acme/Blur/b");
    memory.addFolder(mirror + supportFolder + "/Acme/Empty");
    memory.addFile(mirror + supportFolder + "/Acme/Only.plugin/x");
    memory.addFile(mirror + supportFolder + "/Acme/.hidden/h");
    install();
    EXPECT_THAT(installed,
                ElementsAre(supportFolder + "/Acme/Only.plugin", supportFolder + "/Acme/Zoom/z",
                            supportFolder + "/Acme/Blur/b"));
    EXPECT_FALSE(memory.exists(supportFolder + "/Acme/Empty"));
}

TEST_F(DiskMirrorTest, ALinkBesideTheProductFoldersIsNotALookedIntoFolder) {
    memory.addFile("/elsewhere/file");
    memory.addLink(mirror + supportFolder + "/Acme/link", "/elsewhere");
    install();
    EXPECT_THAT(installed, IsEmpty());
}

TEST_F(DiskMirrorTest, LinksInAProductFolderAreItems) {
    memory.addLink(mirror + supportFolder + "/Acme/Filters 2/link", "guide.txt");
    install();
    EXPECT_THAT(installed, ElementsAre(supportFolder + "/Acme/Filters 2/link"));
    EXPECT_EQ(memory.node(supportFolder + "/Acme/Filters 2/link")->type, FileType::symbolicLink);
}

TEST_F(DiskMirrorTest, EveryOccurrenceOfTheMirrorsPathIsTakenOutOfATarget) {
    fake.bundle.folder = "/Unpacked";
    const std::string unpacked = "/Unpacked/Contents/Resources/files/HD";
    memory.addFile(unpacked + "/Applications" + unpacked + "/Tool.app/x");
    install();
    EXPECT_THAT(installed, ElementsAre("/Applications/Tool.app"));
}

TEST_F(DiskMirrorTest, ThePackagesGoToTheTargetVolume) {
    fake.searchPaths.volume = "/Volumes/Other";
    memory.addFile(mirror + "/Applications/Tool.app/x");
    memory.addFile(mirror + supportFolder + "/Acme/Filters 2/guide.txt");
    install();
    EXPECT_THAT(installed,
                ElementsAre("/Volumes/Other/Applications/Tool.app",
                            "/Volumes/Other" + supportFolder + "/Acme/Filters 2/guide.txt"));
    EXPECT_THAT(engine.operations(), Contains("register /Volumes/Other/Applications/Tool.app"));
}

TEST_F(DiskMirrorTest, WithoutTheMakersNameItsKeyNamesTheFolder) {
    fake.bundle.tables["installer"].clear();
    memory.addFile(mirror + supportFolder + "/company_name/Filters 2/guide.txt");
    memory.addFile(mirror + supportFolder + "/Acme/Filters 2/guide.txt");
    install();
    EXPECT_THAT(installed, ElementsAre(supportFolder + "/company_name/Filters 2/guide.txt"));
}

TEST_F(DiskMirrorTest, ThePlanIsExactlyWhatIsInstalledInThatOrder) {
    memory.addFile(mirror + supportFolder + "/Acme/One/Extra.plugin/x");
    memory.addFile(mirror + supportFolder + "/Acme/One/Presets/Deep.app/x");
    memory.addFile(mirror + supportFolder + "/Acme/One/guide.txt");
    memory.addFile(mirror + supportFolder + "/Acme/One/.hidden");
    memory.addFile(mirror + supportFolder + "/Acme/beside");
    memory.addFolder(mirror + supportFolder + "/Acme/Empty");
    memory.addFile(mirror + "/Applications/Tool.app/x");
    memory.addFile(mirror + "/usr/local/lib/x");
    install();
    std::vector<std::string> sources;
    std::vector<std::string> texts;
    std::vector<std::string> destinations;
    for (const PlannedItem& item : makeInstallPlan(fake.platform, {}).items) {
        sources.push_back(item.source);
        texts.push_back("Installing " + lastPathComponent(item.source));
        destinations.push_back(item.destination);
    }
    EXPECT_EQ(engine.texts, texts);
    EXPECT_EQ(installed, destinations);
    EXPECT_THAT(sources, ElementsAre(mirror + supportFolder + "/Acme/One/Extra.plugin",
                                     mirror + supportFolder + "/Acme/One/Presets/Deep.app",
                                     mirror + "/Applications/Tool.app",
                                     mirror + supportFolder + "/Acme/One/Presets",
                                     mirror + supportFolder + "/Acme/One/guide.txt"));
}

TEST_F(DiskMirrorTest, APackageIsRegisteredAlsoAfterAFileOfTheSameFolder) {
    memory.addFile("/new/file");
    memory.addFile("/new/Tool.app/x");
    const std::vector<PlannedItem> items = {{.source = "/new/file",
                                             .destination = "/D/file",
                                             .rule = InstallRule::productFolder,
                                             .host = std::nullopt},
                                            {.source = "/new/Tool.app",
                                             .destination = "/D/Tool.app",
                                             .rule = InstallRule::mirrorPackage,
                                             .host = std::nullopt,
                                             .isPackage = true}};
    DiskMirror(fake.platform, engine.commands, engine.installer).installFiles(items);
    EXPECT_THAT(installed, ElementsAre("/D/file", "/D/Tool.app"));
    EXPECT_THAT(engine.operations(), Contains("register /D/Tool.app"));
}

TEST_F(DiskMirrorTest, APackageOfAHigherVersionAtTheDestinationIsReplaced) {
    const std::string tool = "/Applications/Tool.app";
    memory.addFile(mirror + tool + "/x", "new");
    memory.addFile(tool + "/x", "old");
    fake.bundles.informationByPath[mirror + tool] = {{"CFBundleVersion", "1.0"}};
    fake.bundles.informationByPath[tool] = {{"CFBundleVersion", "9.0"}};
    install();
    EXPECT_EQ(memory.contents(tool + "/x"), "new");
    EXPECT_THAT(installed, ElementsAre(tool));
}

TEST_F(DiskMirrorTest, AFileOfAProductFolderThatIsNewerAtTheDestinationIsReplaced) {
    const std::string guide = supportFolder + "/Acme/Filters 2/guide.txt";
    memory.addFile(mirror + guide, "new");
    memory.addFile(guide, "old");
    memory.setModificationDate(mirror + guide, FileTime(std::chrono::seconds(100)));
    memory.setModificationDate(guide, FileTime(std::chrono::seconds(200)));
    install();
    EXPECT_EQ(memory.contents(guide), "new");
    EXPECT_THAT(installed, ElementsAre(guide));
}

// The text of the mirror's path may end within a name.
TEST_F(DiskMirrorTest, APackageIsRegisteredUnderTheNameThatItIsInstalledUnder) {
    fake.bundle.folder = "/Unpacked";
    const std::string unpacked = "/Unpacked/Contents/Resources/files/HD";
    memory.addFile(unpacked + "/Applications/X" + unpacked + "-Tool.app/x");
    install();
    EXPECT_THAT(installed, ElementsAre("/Applications/HD-Tool.app"));
    EXPECT_THAT(engine.operations(), Contains("register /Applications/HD-Tool.app"));
    EXPECT_THAT(engine.operations(),
                Contains("/usr/bin/xattr -dr com.apple.quarantine /Applications/HD-Tool.app"));
}

TEST_F(DiskMirrorTest, APayloadWithoutMirrorInstallsNothing) {
    install();
    EXPECT_THAT(engine.operations(), IsEmpty());
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

}  // namespace
}  // namespace installer::test
