#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "install/after/InstallerLog.h"
#include "tests/install/engine/EngineParts.h"
#include "tests/support/FailingFileManager.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string companyFolder = "/Library/Application Support/Acme";
const std::string logPath = companyFolder + "/Filters 2 Installer.log";

class InstallerLogTest : public testing::Test {
  protected:
    InstallerLogTest() { memory.addFolder(companyFolder); }
    void write() { InstallerLog(fake.platform, engine.run, engine.commands).logInstalledPaths(); }

    EngineParts engine;
    FakePlatform& fake = engine.fake;
    MemoryFileManager& memory = fake.memory;
    std::vector<std::string>& installed = engine.run.installedPaths;
};

TEST_F(InstallerLogTest, EachPathIsALine) {
    installed = {"/A", "/B"};
    write();
    EXPECT_EQ(memory.contents(logPath), "/A\n/B\n");
}

TEST_F(InstallerLogTest, TheFileIsMadeByTheAdministratorAndGivenToTheUser) {
    installed = {"/A"};
    write();
    EXPECT_THAT(
        fake.journal,
        ElementsAre("/bin/rm -fR " + logPath, "wait", "/usr/bin/touch " + logPath, "wait",
                    "/usr/sbin/chown -R tester:admin " + logPath, "wait",
                    "/usr/sbin/chmod -R 0644 " + logPath, "wait", "openForWriting " + logPath));
    EXPECT_EQ(memory.node(logPath)->owner, "tester");
    EXPECT_EQ(memory.node(logPath)->group, "admin");
    EXPECT_EQ(memory.node(logPath)->permissions, 0644U);
}

TEST_F(InstallerLogTest, ARunThatInstalledNothingLeavesTheOldLog) {
    memory.addFile(logPath, "/old\n");
    write();
    EXPECT_THAT(fake.journal, IsEmpty());
    EXPECT_EQ(memory.contents(logPath), "/old\n");
}

TEST_F(InstallerLogTest, TheOldListIsReplacedAlsoByAShorterOne) {
    memory.addFile(logPath, "/a/much/longer/old/path\n/and/another\n");
    installed = {"/A"};
    write();
    EXPECT_EQ(memory.contents(logPath), "/A\n");
}

TEST_F(InstallerLogTest, OrderAndDuplicatesAreKeptAndNothingIsEscaped) {
    installed = {"/b", "/a 50%@", "/b",
                 "/Gr\xC3\xBC\xC3\x9F"
                 "e",
                 "/\xFF"};
    write();
    EXPECT_EQ(memory.contents(logPath),
              "/b\n/a 50%@\n/b\n/Gr\xC3\xBC\xC3\x9F"
              "e\n/\xFF\n");
}

TEST_F(InstallerLogTest, AMissingMakersFolderIsOnlyLogged) {
    memory.removeAsAdministrator(companyFolder);
    installed = {"/A"};
    write();
    EXPECT_FALSE(memory.exists(logPath));
    EXPECT_THAT(fake.log.lines, ElementsAre("can't open installer log file for writing"));
    EXPECT_FALSE(engine.run.fileOpErrorOccurred);
}

TEST_F(InstallerLogTest, TheLogIsNeverCreatedByTheUser) {
    installed = {"/A"};
    fake.authorizations.works = [](const auto&) { return false; };
    write();
    EXPECT_FALSE(memory.exists(logPath));
    EXPECT_THAT(fake.log.lines, ElementsAre("can't open installer log file for writing"));
}

TEST_F(InstallerLogTest, IgnoresRefusedRights) {
    installed = {"/A"};
    memory.addFile(logPath);
    refuseFromCommand(fake, 1);
    write();
    EXPECT_FALSE(engine.run.authDenied);
    EXPECT_EQ(memory.contents(logPath), "/A\n");
}

TEST_F(InstallerLogTest, NothingOfALongerOldListThatNobodyCouldRemoveIsLeft) {
    memory.addFile(logPath, "/a/much/longer/old/path\n/and/another\n");
    refuseFromCommand(fake, 1);
    installed = {"/A"};
    write();
    EXPECT_EQ(memory.contents(logPath), "/A\n");
}

/// A disk on which one call on the opened log fails, the one of that place.
class InstallerLogThatCannotBeWritten : public InstallerLogTest {
  protected:
    void writeWithFault(const FaultPlan& plan) {
        installed = {"/A", "/B/C"};
        Faults faults(plan, 10);
        FailingFileManager files(memory, faults);
        Platform platform = platformWith(files, fake);
        InstallerLog(platform, engine.run, engine.commands).logInstalledPaths();
        EXPECT_FALSE(engine.run.fileOpErrorOccurred);
        EXPECT_THAT(fake.log.lines,
                    ElementsAre("can't write to installer log file: " +
                                std::make_error_code(std::errc::no_space_on_device).message()));
    }
};

constexpr std::size_t emptying = 2;
constexpr std::size_t writing = 3;

TEST_F(InstallerLogThatCannotBeWritten, IsEmptyInsteadOfEndingInTheMiddleOfAPath) {
    for (const AfterEffect effect : {AfterEffect::nothing, AfterEffect::part}) {
        fake.log.lines.clear();
        writeWithFault(
            {.place = writing, .afterEffect = effect, .error = std::errc::no_space_on_device});
        EXPECT_EQ(memory.contents(logPath), "");
    }
}

TEST_F(InstallerLogThatCannotBeWritten, IsLeftAloneWhenItCannotBeEmptied) {
    writeWithFault({.place = emptying, .error = std::errc::no_space_on_device});
    EXPECT_EQ(memory.contents(logPath), "");
}

}  // namespace
}  // namespace installer::test
