#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "install/after/InstallIdentifier.h"
#include "tests/install/engine/EngineParts.h"
#include "tests/support/FailingFileManager.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

const std::string company = "/Library/Application Support/Acme";
const std::string path = company + "/entityresolver.guid";

class InstallIdentifierTest : public testing::Test {
  protected:
    InstallIdentifierTest() { memory.addFolder(company); }
    void write() { InstallIdentifier(fake.platform, engine.commands).installAnalytics(); }

    EngineParts engine;
    FakePlatform& fake = engine.fake;
    MemoryFileManager& memory = fake.memory;
};

TEST_F(InstallIdentifierTest, IsARandomIdentifierAndALineEnd) {
    write();
    EXPECT_THAT(memory.contents(path),
                MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\n"));
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

TEST_F(InstallIdentifierTest, IsAnotherOneOnEachMachine) {
    write();
    const std::string first = memory.contents(path);
    memory.removeAsAdministrator(path);
    write();
    EXPECT_NE(memory.contents(path), first);
}

TEST_F(InstallIdentifierTest, TheFileIsMadeByTheAdministratorAndFilledByTheUser) {
    write();
    EXPECT_THAT(
        fake.journal,
        ElementsAre("/usr/bin/touch " + path, "wait", "/usr/sbin/chown -R tester:admin " + path,
                    "wait", "/bin/chmod -R 0664 " + path, "wait", "openForWriting " + path));
    EXPECT_EQ(memory.node(path)->owner, "tester");
    EXPECT_EQ(memory.node(path)->group, "admin");
    EXPECT_EQ(memory.node(path)->permissions, 0664U);
}

TEST_F(InstallIdentifierTest, ASecondTimeChangesNothing) {
    write();
    const std::string identifier = memory.contents(path);
    fake.journal.clear();
    write();
    EXPECT_EQ(memory.contents(path), identifier);
    EXPECT_THAT(fake.journal, IsEmpty());
}

TEST_F(InstallIdentifierTest, WhateverIsThereIsKept) {
    memory.addFile(path, "");
    write();
    EXPECT_EQ(memory.contents(path), "");
    memory.removeAsAdministrator(path);
    memory.addFile(path + "/in a folder", "kept");
    write();
    EXPECT_EQ(memory.contents(path + "/in a folder"), "kept");
    EXPECT_THAT(fake.journal, IsEmpty());
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

TEST_F(InstallIdentifierTest, ALinkIsNotFollowedWhereverItLeads) {
    memory.addFile("/Users/tester/precious", "precious");
    for (const std::string target : {"/Users/tester/precious", "/missing"}) {
        memory.removeAsAdministrator(path);
        memory.addLink(path, target);
        write();
    }
    EXPECT_EQ(memory.contents("/Users/tester/precious"), "precious");
    EXPECT_FALSE(memory.exists("/missing"));
    EXPECT_THAT(fake.journal, IsEmpty());
}

TEST_F(InstallIdentifierTest, AMissingMakersFolderIsOnlyLogged) {
    memory.removeAsAdministrator(company);
    write();
    EXPECT_FALSE(memory.exists(company));
    EXPECT_THAT(fake.log.lines, ElementsAre("can't open guid file handle"));
    EXPECT_FALSE(engine.run.fileOpErrorOccurred);
}

TEST_F(InstallIdentifierTest, TheFileIsNeverCreatedByTheUser) {
    fake.authorizations.works = [](const auto&) { return false; };
    write();
    EXPECT_FALSE(memory.exists(path));
    EXPECT_THAT(fake.log.lines, ElementsAre("can't open guid file handle"));
}

TEST_F(InstallIdentifierTest, IgnoresRefusedRights) {
    refuseFromCommand(fake, 1);
    write();
    EXPECT_FALSE(engine.run.authDenied);
    EXPECT_FALSE(engine.run.fileOpErrorOccurred);
    EXPECT_THAT(engine.operations(),
                ElementsAre("/usr/bin/touch " + path, "/usr/sbin/chown -R tester:admin " + path,
                            "/bin/chmod -R 0664 " + path, "openForWriting " + path));
    EXPECT_THAT(fake.log.lines, ElementsAre("can't open guid file handle"));
}

TEST_F(InstallIdentifierTest, AFailedWriteIsOnlyLoggedWithItsReason) {
    constexpr std::size_t writing = 3;  // after the question whether it exists, and the opening
    Faults faults({.place = writing, .error = std::errc::no_space_on_device}, writing);
    FailingFileManager files(memory, faults);
    Platform platform = platformWith(files, fake);
    InstallIdentifier(platform, engine.commands).installAnalytics();
    EXPECT_THAT(fake.log.lines,
                ElementsAre("can't write to guid file: " +
                            std::make_error_code(std::errc::no_space_on_device).message()));
    EXPECT_FALSE(engine.run.fileOpErrorOccurred);
}

TEST_F(InstallIdentifierTest, LiesOnTheTargetVolume) {
    fake.searchPaths.volume = "/Volumes/Other";
    memory.addFolder("/Volumes/Other" + company);
    write();
    EXPECT_FALSE(memory.exists(path));
    EXPECT_EQ(memory.contents("/Volumes/Other" + path).size(), 37U);
}

}  // namespace
}  // namespace installer::test
