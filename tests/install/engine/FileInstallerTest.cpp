#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "install/engine/FileInstaller.h"
#include "install/run/InstallProgress.h"
#include "tests/install/engine/EngineParts.h"
#include "tests/support/FakeWindow.h"

namespace installer::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// Sources in /new, an existing destination folder /D.
class FileInstallerTest : public testing::Test {
  protected:
    FileInstallerTest() {
        memory.addFile("/new/a", "new a");
        memory.addFile("/new/b", "new b");
        memory.addFile("/new/T.app/x", "new x");
        memory.addFolder("/D");
    }

    void install(const std::vector<std::string>& sources) {
        engine.installer.installSourceFiles(sources, "/D", false, true);
    }
    void setDate(const std::string& path, int seconds) {
        memory.setModificationDate(path, FileTime(std::chrono::seconds(seconds)));
    }

    EngineParts engine;
    FakePlatform& fake = engine.fake;
    MemoryFileManager& memory = fake.memory;
    std::vector<std::string>& installed = engine.run.installedPaths;
};

TEST_F(FileInstallerTest, AnItemIsCopiedAndGivenToTheUserAndTheAdministrators) {
    install({"/new/a"});
    EXPECT_THAT(engine.operations(),
                ElementsAre("copy /new/a /D/a", "/usr/sbin/chown -R tester:admin /D/a",
                            "/bin/chmod -R 0775 /D/a"));
    EXPECT_THAT(installed, ElementsAre("/D/a"));
    EXPECT_EQ(memory.node("/D/a")->permissions, 0775U);
    EXPECT_EQ(memory.node("/D/a")->group, "admin");
    EXPECT_EQ(memory.contents("/D/a"), "new a");
}

TEST_F(FileInstallerTest, ItemsThatAreUnderWayAreConfirmedBeforeAnExistingOneIsRemoved) {
    memory.addFile("/D/b", "old b");
    memory.addFile("/new/c", "new c");
    install({"/new/c", "/new/a", "/new/b"});
    const auto removal = std::ranges::find(fake.journal, "remove /D/b");
    ASSERT_NE(removal, fake.journal.end());
    EXPECT_EQ(std::count(fake.journal.begin(), removal, "wait"), 4);
}

TEST_F(FileInstallerTest, EachItemIsLoggedAndShownByItsName) {
    install({"/new/a", "/new/T.app"});
    EXPECT_THAT(engine.texts, ElementsAre("Installing a", "Installing T.app"));
    EXPECT_THAT(fake.log.lines, ElementsAre("Installing a", "Installing T.app"));
}

// What takes the time, or ends the installer, is then the last line of the log.
TEST_F(FileInstallerTest, EachItemIsLoggedBeforeItIsShownAndShownBeforeItIsCopied) {
    std::vector<std::string> linesWhenShown;
    FileInstaller installer(fake.platform, engine.run, engine.commands, engine.folders,
                            engine.errors, [&](const std::string&) {
                                linesWhenShown = fake.log.lines;
                                EXPECT_THAT(engine.operations(), IsEmpty());
                            });
    installer.installSourceFiles({"/new/a"}, "/D", false, true);
    EXPECT_THAT(linesWhenShown, ElementsAre("Installing a"));
}

TEST_F(FileInstallerTest, AMissingTextLeavesTheName) {
    fake.bundle.tables.clear();
    install({"/new/a"});
    EXPECT_THAT(engine.texts, ElementsAre("a"));
}

TEST_F(FileInstallerTest, TheFolderIsMadeFirstAlsoWhenThereIsNothingToInstall) {
    engine.installer.installSourceFiles({}, "/D/new", false, true);
    EXPECT_THAT(engine.operations(),
                ElementsAre("createFolders /D/new 0775", "setAttributes /D/new tester:admin 0775"));
}

TEST_F(FileInstallerTest, NoPathHasADoubledSeparator) {
    engine.installer.installSourceFiles({"/new//T.app/"}, "//D//", true, true);
    EXPECT_THAT(installed, ElementsAre("/D/T.app"));
    EXPECT_THAT(engine.texts, ElementsAre("Installing T.app"));
    EXPECT_EQ(memory.contents("/D/T.app/x"), "new x");
}

TEST_F(FileInstallerTest, AnExistingItemIsRemovedWholeAndNotMergedWith) {
    memory.addFile("/D/T.app/old", "old");
    install({"/new/T.app"});
    EXPECT_THAT(engine.operations(), ElementsAre("remove /D/T.app", "copy /new/T.app /D/T.app",
                                                 "/usr/sbin/chown -R tester:admin /D/T.app",
                                                 "/bin/chmod -R 0775 /D/T.app"));
    EXPECT_FALSE(memory.exists("/D/T.app/old"));
    EXPECT_THAT(fake.log.lines, ElementsAre("Installing T.app", "removing existing file..."));
}

TEST_F(FileInstallerTest, ALinkInTheWayIsRemovedItself) {
    memory.addFile("/elsewhere/file");
    memory.addLink("/D/a", "/elsewhere/file");
    install({"/new/a"});
    EXPECT_TRUE(memory.exists("/elsewhere/file"));
    EXPECT_EQ(memory.contents("/D/a"), "new a");
}

TEST_F(FileInstallerTest, TheAdministratorDoesWhatTheUserMayNot) {
    memory.addFile("/D/a", "old a");
    memory.makeUnwritable("/D");
    install({"/new/a"});
    EXPECT_THAT(
        engine.operations(),
        ElementsAre("remove /D/a", "/bin/rm -fR /D/a", "copy /new/a /D/a", "/bin/cp -R /new/a /D/a",
                    "/usr/sbin/chown -R tester:admin /D/a", "/bin/chmod -R 0775 /D/a"));
    EXPECT_EQ(memory.contents("/D/a"), "new a");
    EXPECT_THAT(fake.clock.sleeps, IsEmpty());
    EXPECT_THAT(fake.log.lines, Not(Contains("Took a delay to verify file a")));
}

TEST_F(FileInstallerTest, AnItemThatStaysMissingIsReportedAndTheNextOneFollows) {
    memory.makeUnwritable("/D");
    fake.authorizations.works = [](const std::vector<std::string>& command) {
        return command.back() != "/D/a";
    };
    install({"/new/a", "/new/b"});
    EXPECT_TRUE(engine.run.fileOpErrorOccurred);
    EXPECT_FALSE(engine.run.authDenied);
    EXPECT_THAT(installed, ElementsAre("/D/b"));
    EXPECT_THAT(fake.log.lines,
                ElementsAre("Installing a", "Could not install file: /D/a", "Installing b"));
    ASSERT_THAT(fake.alerts.shown, SizeIs(1));
    EXPECT_EQ(fake.alerts.shown.front().identifier, "install-error");
    EXPECT_EQ(fake.alerts.shown.front().message, "[] failed at /D/a");
    EXPECT_THAT(engine.operations(),
                ElementsAre("copy /new/a /D/a", "/bin/cp -R /new/a /D/a", "copy /new/b /D/b",
                            "/bin/cp -R /new/b /D/b", "/usr/sbin/chown -R tester:admin /D/b",
                            "/bin/chmod -R 0775 /D/b"));
}

/// A disk that does not let the user look into one folder.
class HidingFileManager : public RecordingFileManager {
  public:
    using RecordingFileManager::RecordingFileManager;
    bool exists(const std::string& path) override {
        return !path.starts_with("/D/") && RecordingFileManager::exists(path);
    }
    Result<FileAttributes> attributes(const std::string& path) override {
        if (path.starts_with("/D/")) return std::make_error_code(std::errc::permission_denied);
        return RecordingFileManager::attributes(path);
    }
};

class FileInstallerInAHiddenFolder : public FileInstallerTest {
  protected:
    FileInstallerInAHiddenFolder() { memory.makeUnwritable("/D"); }
    void installItem() { installer.installSourceFiles({"/new/a"}, "/D", false, true); }

    HidingFileManager files{memory, fake.journal};
    Platform platform = platformWith(files, fake);
    FileInstaller installer{platform,       engine.run,    engine.commands,
                            engine.folders, engine.errors, [](const std::string&) {}};
};

TEST_F(FileInstallerInAHiddenFolder, AnItemIsInstalledWhenTheAdministratorSaysSo) {
    memory.addFile("/D/a", "old a");
    installItem();
    EXPECT_THAT(engine.operations(),
                ElementsAre("copy /new/a /D/a", "/bin/rm -fR /D/a", "/bin/cp -R /new/a /D/a",
                            "/usr/sbin/chown -R tester:admin /D/a", "/bin/chmod -R 0775 /D/a"));
    EXPECT_EQ(memory.contents("/D/a"), "new a");
    EXPECT_THAT(installed, ElementsAre("/D/a"));
    EXPECT_FALSE(engine.run.fileOpErrorOccurred);
    EXPECT_THAT(fake.clock.sleeps, IsEmpty());
}

TEST_F(FileInstallerInAHiddenFolder, AnItemThatTheAdministratorCouldNotCopyIsReported) {
    fake.authorizations.works = [](const std::vector<std::string>& command) {
        return command.front() != "/bin/cp";
    };
    installItem();
    EXPECT_THAT(installed, IsEmpty());
    EXPECT_TRUE(engine.run.fileOpErrorOccurred);
    EXPECT_THAT(fake.alerts.shown, SizeIs(1));
}

TEST_F(FileInstallerTest, AMissingItemIsWaitedForFourMillisecondsAtMost) {
    memory.makeUnwritable("/D");
    fake.authorizations.works = [](const auto&) { return false; };
    install({"/new/a"});
    EXPECT_THAT(fake.clock.sleeps, SizeIs(32));
    EXPECT_THAT(fake.clock.sleeps, Each(std::chrono::microseconds(125)));
}

TEST_F(FileInstallerTest, AnItemThatAppearsDuringTheWaitIsInstalledAndTheDelayIsLogged) {
    memory.makeUnwritable("/D");
    fake.authorizations.works = [](const std::vector<std::string>& command) {
        return command.front() != "/bin/cp";
    };
    fake.clock.duringSleep = [this] {
        if (fake.clock.sleeps.size() == 3) memory.addFile("/D/a");
    };
    install({"/new/a"});
    EXPECT_THAT(fake.clock.sleeps, SizeIs(3));
    EXPECT_THAT(fake.log.lines, ElementsAre("Installing a", "Took a delay to verify file a"));
    EXPECT_FALSE(engine.run.fileOpErrorOccurred);
    EXPECT_THAT(installed, ElementsAre("/D/a"));
}

/// Has an item appear when it is looked for the fourth time: the third look, right after the
/// administrator's copy, has missed it.
class LateFileManager : public RecordingFileManager {
  public:
    LateFileManager(MemoryFileManager& memory, std::vector<std::string>& journal)
        : RecordingFileManager(memory, journal), memory_(memory) {}
    bool exists(const std::string& path) override {
        if (path == "/D/a" && ++looks_ == 4) memory_.addFile(path);
        return RecordingFileManager::exists(path);
    }

  private:
    MemoryFileManager& memory_;
    int looks_ = 0;
};

TEST_F(FileInstallerTest, ASecondLookThatFindsTheItemAtOnceCountsAsADelayToo) {
    LateFileManager files(memory, fake.journal);
    Platform platform = platformWith(files, fake);
    DestinationFolders folders(platform, engine.run, engine.commands);
    FileInstaller installer(platform, engine.run, engine.commands, folders, engine.errors,
                            [](const std::string&) {});
    fake.authorizations.works = [](const std::vector<std::string>& command) {
        return command.front() != "/bin/cp";
    };
    memory.makeUnwritable("/D");
    installer.installSourceFiles({"/new/a"}, "/D", false, true);
    EXPECT_THAT(fake.clock.sleeps, IsEmpty());
    EXPECT_THAT(fake.log.lines, ElementsAre("Installing a", "Took a delay to verify file a"));
    EXPECT_THAT(installed, ElementsAre("/D/a"));
}

TEST_F(FileInstallerTest, TheItemIsNoLongerLookedForWhenTheLastWaitIsOver) {
    memory.makeUnwritable("/D");
    fake.authorizations.works = [](const std::vector<std::string>& command) {
        return command.front() != "/bin/cp";
    };
    fake.clock.duringSleep = [this] {
        if (fake.clock.sleeps.size() == 32) memory.addFile("/D/a");
    };
    install({"/new/a"});
    EXPECT_TRUE(engine.run.fileOpErrorOccurred);
    // What is there in the end is installed all the same, and the log says so.
    EXPECT_THAT(installed, ElementsAre("/D/a"));
}

TEST_F(FileInstallerTest, AFailedCopyOntoAnItemThatIsThereNeedsNoAdministrator) {
    fake.files.setFault([this](const RecordingFileManager::Operation& operation) {
        if (operation.front() != "copy") return std::error_code();
        memory.addFile("/D/a", "of somebody else");
        return std::make_error_code(std::errc::file_exists);
    });
    install({"/new/a"});
    EXPECT_THAT(engine.operations(),
                ElementsAre("copy /new/a /D/a", "/usr/sbin/chown -R tester:admin /D/a",
                            "/bin/chmod -R 0775 /D/a"));
    EXPECT_THAT(installed, ElementsAre("/D/a"));
}

TEST_F(FileInstallerTest, AnOldItemThatNobodyCanRemoveCountsAsInstalled) {
    memory.addFile("/D/a", "old a");
    memory.makeUnwritable("/D");
    fake.authorizations.works = [](const std::vector<std::string>& command) {
        return command.front() != "/bin/rm";
    };
    install({"/new/a"});
    EXPECT_EQ(memory.contents("/D/a"), "old a");
    EXPECT_THAT(installed, ElementsAre("/D/a"));
    EXPECT_FALSE(engine.run.fileOpErrorOccurred);
}

TEST_F(FileInstallerTest, ACopyThatLeavesNothingIsNotLogged) {
    fake.files.setFault([this](const RecordingFileManager::Operation& operation) {
        if (operation.front() == "copy") memory.removeAsAdministrator("/D");
        return std::error_code();
    });
    fake.authorizations.works = [](const auto&) { return false; };
    install({"/new/a"});
    EXPECT_THAT(installed, IsEmpty());
}

TEST_F(FileInstallerTest, ProgressIsToldOfTheBytesThatAreCopied) {
    FakeProgressIndicator indicator;
    InstallProgress progress(indicator, fake.clock);
    engine.run.setProgress(&progress);
    EXPECT_EQ(fake.authorizations.progressSink, &progress);
    progress.begin(20, 0);
    install({"/new/a", "/new/b"});
    EXPECT_THAT(indicator.fractions, Contains(0.25));
    EXPECT_EQ(indicator.fractions.back(), 0.5);
}

TEST_F(FileInstallerTest, TheAdministratorsCopyCountsWithinTheSameItem) {
    FakeProgressIndicator indicator;
    InstallProgress progress(indicator, fake.clock);
    engine.run.setProgress(&progress);
    memory.makeUnwritable("/D");
    fake.authorizations.status = [&](const std::vector<std::string>& command) {
        // As when the user's copy had come far before it failed.
        if (command.front() == "/bin/cp") {
            fake.authorizations.progressSink->bytesCopied(4);
            fake.authorizations.progressSink->bytesCopied(5);
        }
        return 0;
    };
    progress.begin(10, 0);
    install({"/new/a"});
    EXPECT_THAT(indicator.fractions, Contains(0.4));
    EXPECT_EQ(indicator.fractions.back(), 0.5);
}

TEST_F(FileInstallerTest, AnItemThatIsKeptCountsAsDone) {
    FakeProgressIndicator indicator;
    InstallProgress progress(indicator, fake.clock);
    engine.run.setProgress(&progress);
    memory.addFile("/D/a", "kept");
    setDate("/D/a", 2);
    setDate("/new/a", 1);
    progress.begin(5, 0);
    engine.installer.installSourceFiles({"/new/a"}, "/D", false, false);
    EXPECT_EQ(memory.contents("/D/a"), "kept");
    EXPECT_EQ(indicator.fractions.back(), 1.0);
}

TEST_F(FileInstallerTest, APathInstalledTwiceIsListedTwice) {
    install({"/new/a"});
    install({"/new/a"});
    EXPECT_THAT(installed, ElementsAre("/D/a", "/D/a"));
}

// Where a refusal can meet an item, and what has been done by then.
struct RefusalRow {
    std::string tool;
    std::vector<std::string> operations;
};

class FileInstallerWithARefusedTool : public testing::TestWithParam<RefusalRow> {};

TEST_P(FileInstallerWithARefusedTool, EndsAtOnceWithoutALogEntry) {
    EngineParts engine;
    engine.fake.memory.addFile("/new/a");
    engine.fake.memory.addFile("/new/b");
    engine.fake.memory.addFile("/D/a");
    engine.fake.memory.makeUnwritable("/D");
    refuseTool(engine.fake, GetParam().tool);
    engine.installer.installSourceFiles({"/new/a", "/new/b"}, "/D", false, true);
    EXPECT_EQ(engine.operations(), GetParam().operations);
    EXPECT_TRUE(engine.run.authDenied);
    EXPECT_FALSE(engine.run.fileOpErrorOccurred);
    EXPECT_THAT(engine.fake.alerts.shown, IsEmpty());
    EXPECT_THAT(engine.run.installedPaths, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Tools, FileInstallerWithARefusedTool,
    testing::Values(RefusalRow{"/bin/rm", {"remove /D/a", "/bin/rm -fR /D/a"}},
                    RefusalRow{"/bin/cp",
                               {"remove /D/a", "/bin/rm -fR /D/a", "copy /new/a /D/a",
                                "/bin/cp -R /new/a /D/a"}},
                    RefusalRow{"/usr/sbin/chown",
                               {"remove /D/a", "/bin/rm -fR /D/a", "copy /new/a /D/a",
                                "/bin/cp -R /new/a /D/a", "/usr/sbin/chown -R tester:admin /D/a"}},
                    RefusalRow{"/bin/chmod",
                               {"remove /D/a", "/bin/rm -fR /D/a", "copy /new/a /D/a",
                                "/bin/cp -R /new/a /D/a", "/usr/sbin/chown -R tester:admin /D/a",
                                "/bin/chmod -R 0775 /D/a"}}),
    [](const auto& test) { return test.param.tool.substr(test.param.tool.rfind('/') + 1); });

TEST_F(FileInstallerTest, AfterARefusalNothingIsCopiedNotEvenIntoAWritableFolderThatExists) {
    engine.run.authDenied = true;
    install({"/new/a"});
    EXPECT_THAT(engine.operations(), IsEmpty());
    EXPECT_THAT(engine.texts, IsEmpty());
}

TEST_F(FileInstallerTest, AfterARefusalAMissingFolderIsStillMadeWhereTheUserMay) {
    engine.run.authDenied = true;
    engine.installer.installSourceFiles({"/new/a"}, "/D/new", false, true);
    EXPECT_THAT(engine.operations(),
                ElementsAre("createFolders /D/new 0775", "setAttributes /D/new tester:admin 0775"));
}

TEST_F(FileInstallerTest, ARefusalWhileMakingTheFolderInstallsNothing) {
    memory.makeUnwritable("/");
    refuseFromCommand(fake, 1);
    engine.installer.installSourceFiles({"/new/a"}, "/E", false, true);
    EXPECT_THAT(engine.operations(),
                ElementsAre("createFolders /E 0775", "/bin/mkdir -m775 -p /E"));
    EXPECT_THAT(engine.texts, IsEmpty());
}

TEST_F(FileInstallerTest, ANewerFileIsKeptWhenTheCallerAsks) {
    memory.addFile("/D/a", "old a");
    setDate("/D/a", 200);
    setDate("/new/a", 100);
    engine.installer.installSourceFiles({"/new/a"}, "/D", false, false);
    EXPECT_EQ(memory.contents("/D/a"), "old a");
    EXPECT_THAT(engine.operations(), IsEmpty());
    EXPECT_THAT(installed, IsEmpty());
}

TEST_F(FileInstallerTest, ANewerFileIsReplacedWhenTheCallerAlwaysInstalls) {
    memory.addFile("/D/a", "old a");
    setDate("/D/a", 200);
    install({"/new/a"});
    EXPECT_EQ(memory.contents("/D/a"), "new a");
}

TEST_F(FileInstallerTest, BundlesAreDecidedByVersionAndFilesByDate) {
    memory.addFile("/D/T.app/old");
    setDate("/D/T.app", 200);
    setDate("/new/T.app", 100);
    fake.bundles.informationByPath["/D/T.app"] = {{"CFBundleVersion", "1.0"}};
    fake.bundles.informationByPath["/new/T.app"] = {{"CFBundleVersion", "1.1"}};
    engine.installer.installSourceFiles({"/new/T.app"}, "/D", false, false);
    EXPECT_TRUE(memory.exists("/D/T.app/old"));
    engine.installer.installSourceFiles({"/new/T.app"}, "/D", true, false);
    EXPECT_FALSE(memory.exists("/D/T.app/old"));
}

TEST_F(FileInstallerTest, AKeptItemHoldsBackTheMissingOnesAfterItUntilOneThatExistsIsReplaced) {
    memory.addFile("/new/c");
    memory.addFile("/new/d");
    memory.addFile("/D/a");
    setDate("/D/a", 200);
    memory.addFile("/D/c");
    engine.installer.installSourceFiles({"/new/a", "/new/b", "/new/c", "/new/d"}, "/D", false,
                                        false);
    EXPECT_FALSE(memory.exists("/D/b"));
    EXPECT_THAT(installed, ElementsAre("/D/c", "/D/d"));
    EXPECT_THAT(engine.texts,
                ElementsAre("Installing a", "Installing b", "Installing c", "Installing d"));
}

TEST_F(FileInstallerTest, EachCallStartsWithNothingHeldBack) {
    memory.addFile("/D/a");
    setDate("/D/a", 200);
    engine.installer.installSourceFiles({"/new/a", "/new/b"}, "/D", false, false);
    engine.installer.installSourceFiles({"/new/b"}, "/D", false, false);
    EXPECT_THAT(installed, ElementsAre("/D/b"));
}

TEST_F(FileInstallerTest, NamesOfEveryKindAreTakenAsTheyAre) {
    const std::vector<std::string> names = {"with space", "-fR",  "50%@",  "a\nb",
                                            "'\"",        "\xFF", "Grüße", std::string(255, 'n')};
    std::vector<std::string> sources;
    for (const std::string& name : names) {
        memory.addFile("/odd/" + name, name);
        sources.push_back("/odd/" + name);
    }
    install(sources);
    for (const std::string& name : names) EXPECT_EQ(memory.contents("/D/" + name), name);
    EXPECT_THAT(installed, SizeIs(names.size()));
}

}  // namespace
}  // namespace installer::test
