#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "install/plan/InstallPlan.h"
#include "install/plan/PayloadWarnings.h"
#include "tests/install/engine/EngineParts.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

const std::string mirrorSupport = mirror + "/Library/Application Support";

std::string warning(const std::string& path) {
    return "This payload item is never installed: " + path;
}

class PayloadWarningsTest : public testing::Test {
  protected:
    void log() { logPayloadWarnings(makeInstallPlan(fake.platform, {}), fake.log); }

    FakePlatform fake;
    MemoryFileManager& memory = fake.memory;
};

TEST_F(PayloadWarningsTest, APayloadThatIsInstalledWholeGivesNone) {
    memory.addFile(mirror + "/Applications/Tool.app/.hidden");
    memory.addFolder(mirror + "/empty");
    memory.addFile(mirrorSupport + "/Acme/Filters 2/guide.txt");
    memory.addFile(mirrorSupport + "/Acme/Filters 2/Presets/.hidden");
    memory.addLink(mirrorSupport + "/Acme/Filters 2/link", "guide.txt");
    memory.addFile(mirrorSupport + "/Acme/Only.plugin/x");
    memory.addFile(payload + "/PHOTOSHOP/Presets/run.jsx");
    memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/.hidden");
    memory.addFile(payload + "/LIGHTROOM/a");
    log();
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

TEST_F(PayloadWarningsTest, NameWhatIsNotInstalledIntoAFolderOfTheSystem) {
    memory.addFile(mirror + "/usr/lib/Evil.plugin/x");
    log();
    EXPECT_THAT(fake.log.lines,
                ElementsAre("This item is not installed, since its destination is a folder of the "
                            "system: /usr/lib/Evil.plugin"));
}

TEST_F(PayloadWarningsTest, NamePlainFilesOutsideTheProductFoldersOfTheMirror) {
    memory.addFile(mirror + "/usr/local/lib/x");
    memory.addFile(mirrorSupport + "/Acme/loose.txt");
    memory.addFile(mirrorSupport + "/Other/Product/file");
    log();
    EXPECT_THAT(fake.log.lines,
                UnorderedElementsAre(warning(mirror + "/usr/local/lib/x"),
                                     warning(mirrorSupport + "/Acme/loose.txt"),
                                     warning(mirrorSupport + "/Other/Product/file")));
}

TEST_F(PayloadWarningsTest, NameFilesOfAMakerWhoseNameBeginsWithOurMakersName) {
    memory.addFile(mirrorSupport + "/Acme Two/Product/file");
    log();
    EXPECT_THAT(fake.log.lines, ElementsAre(warning(mirrorSupport + "/Acme Two/Product/file")));
}

TEST_F(PayloadWarningsTest, NameHiddenEntriesWithOneLineForAFolder) {
    memory.addFile(payload + "/.DS_Store");
    memory.addFile(mirror + "/.hidden/Tool.app/x");
    memory.addFile(mirrorSupport + "/Acme/Filters 2/.hidden");
    memory.addFile(payload + "/PHOTOSHOP/deep/.hidden");
    // Of two reasons against an entry, its name is told.
    memory.addFile(mirror + "/.plain");
    memory.addLink(payload + "/PHOTOSHOP/.link", "deep");
    log();
    EXPECT_THAT(
        fake.log.lines,
        UnorderedElementsAre(warning(payload + "/.DS_Store"), warning(mirror + "/.hidden"),
                             warning(mirror + "/.plain"), warning(payload + "/PHOTOSHOP/.link"),
                             warning(mirrorSupport + "/Acme/Filters 2/.hidden"),
                             warning(payload + "/PHOTOSHOP/deep/.hidden")));
}

TEST_F(PayloadWarningsTest, NameLinksAndSpecialFilesThatAreNoPartOfAnItem) {
    memory.addLink(mirror + "/Applications/link", "/etc");
    memory.addLink(mirrorSupport + "/Acme/link", "Filters 2");
    memory.addLink(payload + "/PHOTOSHOP/link", "a");
    memory.addOther(payload + "/LIGHTROOM/fifo");
    log();
    EXPECT_THAT(fake.log.lines, UnorderedElementsAre(warning(mirror + "/Applications/link"),
                                                     warning(mirrorSupport + "/Acme/link"),
                                                     warning(payload + "/PHOTOSHOP/link"),
                                                     warning(payload + "/LIGHTROOM/fifo")));
}

TEST_F(PayloadWarningsTest, NameEntriesOfThePayloadThatTheInstallerDoesNotKnow) {
    memory.addFile(payload + "/APERTURE/x");
    memory.addFile(payload + "/read me.txt");
    log();
    EXPECT_THAT(fake.log.lines,
                ElementsAre(warning(payload + "/APERTURE"), warning(payload + "/read me.txt")));
}

TEST_F(PayloadWarningsTest, ABundleWithoutPayloadIsSaid) {
    log();
    EXPECT_THAT(fake.log.lines, ElementsAre("There is no payload to install: " + payload));
}

TEST_F(PayloadWarningsTest, AFolderThatCannotBeReadIsSaid) {
    memory.addFile(payload + "/PHOTOSHOP/Presets/run.jsx");
    fake.files.setFault([](const RecordingFileManager::Operation& operation) {
        const bool fails = operation.back().ends_with("/Presets");
        return fails ? std::make_error_code(std::errc::io_error) : std::error_code();
    });
    log();
    EXPECT_THAT(fake.log.lines, ElementsAre("This payload folder cannot be read: " + payload +
                                            "/PHOTOSHOP/Presets"));
}

TEST_F(PayloadWarningsTest, AFolderThatCannotBeReadIsSaidInItemsThatAreCopiedWholeToo) {
    const std::vector<std::string> closed = {
        mirror + "/Applications/Tool.app/Contents",
        mirrorSupport + "/Acme/Filters 2/Presets/More",
        payload + "/PHOTOSHOP_PLUGINS/Filter.plugin/Contents/MacOS",
    };
    std::vector<std::string> lines;
    for (const std::string& folder : closed) {
        memory.addFile(folder + "/file");
        memory.makeUnlistable(folder);
        lines.push_back("This payload folder cannot be read: " + folder);
    }
    log();
    EXPECT_THAT(fake.log.lines, UnorderedElementsAreArray(lines));
}

TEST_F(PayloadWarningsTest, NothingIsChanged) {
    memory.addFile(mirror + "/x");
    log();
    EXPECT_THAT(fake.journal, IsEmpty());
}

}  // namespace
}  // namespace installer::test
