#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/HostModel.h"
#include "steps/install/InstallFilesController.h"
#include "steps/install/InstallFilesModel.h"
#include "tests/install/engine/EngineParts.h"
#include "tests/support/FakeMainController.h"
#include "tests/support/FakeWindow.h"

namespace installer::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::string support = "/Library/Application Support";
const std::string plugIns = support + "/Adobe/Plug-Ins/CC";
const std::string tool = "/Applications/Tool.app";
const std::string product = support + "/Acme/Filters 2";
const std::string editors = support + "/Acme/Prismor X";
const std::string photoshop = "/Applications/Adobe Photoshop CC 2019";
const std::string logFile = support + "/Acme/Filters 2 Installer.log";
const std::string manifest = "/Users/tester/Library/Application Support/Acme/manifest.xml";

using Lines = std::vector<std::string>;

Lines joined(std::initializer_list<Lines> parts) {
    Lines all;
    for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

// What a run asks for, part by part, where the user may write everywhere.

Lines folderOperations(const std::string& path) {
    return {"createFolders " + path + " 0775", "setAttributes " + path + " tester:admin 0775"};
}

Lines itemOperations(const std::string& source, const std::string& destination) {
    return {"copy " + source + " " + destination, "/usr/sbin/chown -R tester:admin " + destination,
            "/bin/chmod -R 0775 " + destination};
}

Lines toolOperations() {
    return joined({itemOperations(mirror + tool, tool),
                   {"register " + tool, "/usr/bin/xattr -dr com.apple.quarantine " + tool}});
}

Lines productOperations() {
    return joined({folderOperations(support + "/Acme"), folderOperations(product),
                   itemOperations(mirror + product + "/guide.txt", product + "/guide.txt")});
}

Lines editorsOperations() {
    return joined({folderOperations(editors), {"createFile " + editors + "/ExternalEditors.csv"}});
}

Lines photoshopOperations() {
    const std::string script = "/Presets/run.jsx";
    return joined({folderOperations(photoshop + "/Presets"),
                   itemOperations(payload + "/PHOTOSHOP" + script, photoshop + script),
                   folderOperations(support + "/Adobe/Plug-Ins"), folderOperations(plugIns),
                   itemOperations(payload + "/PHOTOSHOP_PLUGINS/F.plugin", plugIns + "/F.plugin")});
}

Lines customFolderOperations() {
    return joined(
        {folderOperations("/My Plug-Ins"),
         itemOperations(payload + "/PHOTOSHOP_PLUGINS/F.plugin", "/My Plug-Ins/F.plugin")});
}

Lines logOperations() {
    return {"/bin/rm -fR " + logFile, "/usr/bin/touch " + logFile,
            "/usr/sbin/chown -R tester:admin " + logFile, "/usr/sbin/chmod -R 0644 " + logFile,
            "openForWriting " + logFile};
}

/// A machine with one Photoshop and a payload with something for everybody.
class InstallFilesControllerTest : public testing::Test {
  protected:
    InstallFilesControllerTest() {
        addTexts(fake);
        fake.bundle.tables["Localizable"]["copy_files_title"] = "Installing %@";
        fake.bundle.tables["Localizable"]["copy_files_text"] = "Please wait";
        fake.bundle.tables["Localizable"]["auth_error"] = "No rights";
        fake.bundle.tables["Localizable"]["done"] = "Done";
        memory.addFile(mirror + tool + "/Contents/x");
        memory.addFile(mirror + product + "/guide.txt");
        memory.addFile(payload + "/PHOTOSHOP/Presets/run.jsx");
        memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x");
        memory.addFolder(support);
        memory.addFolder(photoshop + "/Adobe Photoshop CC 2019.app");
        memory.addFolder("/Applications/Quarrytone Inkvale 4.app");
        memory.addFile(manifest);
    }

    HostModel photoshopHost() {
        return PhotoshopHostModel::initWithHostName(fake.platform, "Adobe Photoshop CC 2019");
    }
    HostModel customHost() { return UnknownHostModel(fake.platform, "/My Plug-Ins"); }

    /// Makes the item of that name fail, whoever copies it.
    void failItem(const std::string& name) {
        const auto fails = [name](const std::vector<std::string>& words) {
            return words.back().ends_with("/" + name);
        };
        fake.files.setFault([fails](const RecordingFileManager::Operation& operation) {
            return operation.front() == "copy" && fails(operation)
                       ? std::make_error_code(std::errc::io_error)
                       : std::error_code();
        });
        fake.authorizations.works = [fails](const std::vector<std::string>& command) {
            return command.front() != "/bin/cp" || !fails(command);
        };
    }

    FakePlatform fake;
    MemoryFileManager& memory = fake.memory;
    InstallFilesController controller{fake.platform};
};

// The run, as the quiet installation does it.

TEST_F(InstallFilesControllerTest, AHostInAFolderOfTheSystemIsReportedAndEveryOtherInstalledInto) {
    const HostModel planted = UnknownHostModel(fake.platform, "/etc/systemd/system.control");
    controller.install({planted, photoshopHost(), customHost()}, true);
    EXPECT_THAT(operationsOf(fake),
                ElementsAreArray(joined({toolOperations(),
                                         productOperations(),
                                         editorsOperations(),
                                         {"remove " + manifest, lsregisterCommand},
                                         photoshopOperations(),
                                         customFolderOperations(),
                                         logOperations()})));
    EXPECT_FALSE(memory.exists("/etc"));
    EXPECT_TRUE(controller.fileOpErrorOccurred());
    EXPECT_THAT(fake.alerts.shown, testing::SizeIs(1));
    EXPECT_THAT(fake.log.lines, Contains("This item is not installed, since its destination is a "
                                         "folder of the system: "
                                         "/etc/systemd/system.control/F.plugin"));
}

TEST_F(InstallFilesControllerTest, ARunDoesEverythingInAFixedOrder) {
    controller.install({photoshopHost(), customHost()}, true);
    EXPECT_THAT(operationsOf(fake),
                ElementsAreArray(joined({toolOperations(),
                                         productOperations(),
                                         editorsOperations(),
                                         {"remove " + manifest, lsregisterCommand},
                                         photoshopOperations(),
                                         customFolderOperations(),
                                         logOperations()})));
    EXPECT_EQ(memory.contents(logFile), tool + "\n" + product + "/guide.txt\n" + editors +
                                            "/ExternalEditors.csv\n" + photoshop +
                                            "/Presets/run.jsx\n" + plugIns + "/F.plugin\n" +
                                            "/My Plug-Ins/F.plugin\n");
    EXPECT_FALSE(controller.fileOpErrorOccurred());
    EXPECT_FALSE(controller.authDenied());
}

TEST_F(InstallFilesControllerTest, TheFileManagerIsToldOfEachCopyInItsOrderBeforeTheRunMakesIt) {
    bool wasExpected = false;
    fake.files.setFault([&](const RecordingFileManager::Operation& operation) {
        if (operation.front() == "copy") wasExpected = memory.expectsCopies;
        return std::error_code();
    });
    controller.install({photoshopHost()}, true);
    EXPECT_TRUE(wasExpected);
    Lines copies;
    for (const ExpectedCopy& copy : memory.expectedCopies) copies.push_back(copy.destination);
    ASSERT_THAT(copies, ElementsAre(tool, product + "/guide.txt", photoshop + "/Presets/run.jsx",
                                    plugIns + "/F.plugin"));
    EXPECT_EQ(memory.expectedCopies.front().source, mirror + tool);
    EXPECT_FALSE(memory.expectsCopies) << "the run is over";
}

TEST_F(InstallFilesControllerTest, TheFileManagerIsToldOfNoCopyByARunWithoutItems) {
    memory.expectedCopies = {{.source = "of an earlier run", .destination = "/x"}};
    memory.removeAsAdministrator(payload);
    controller.install({photoshopHost()}, false);
    EXPECT_EQ(memory.expectedCopies.size(), 1U);
    EXPECT_FALSE(memory.expectsCopies);
}

TEST_F(InstallFilesControllerTest, ARunDoesNothingThatItsPlanDoesNotHold) {
    // The administrator has to do everything, also over what is there already.
    fake.files.setFault([](const RecordingFileManager::Operation& operation) {
        const bool changes = operation.front() == "copy" || operation.front() == "remove" ||
                             operation.front() == "createFolders";
        return changes ? std::make_error_code(std::errc::permission_denied) : std::error_code();
    });
    for (int run = 0; run < 2; ++run) {
        controller.install({photoshopHost(), customHost()}, true);
        EXPECT_FALSE(controller.fileOpErrorOccurred());
        EXPECT_THAT(fake.authorizations.unplanned, IsEmpty());
        for (const std::string& path :
             {tool, product + "/guide.txt", editors, photoshop + "/Presets/run.jsx",
              plugIns + "/F.plugin", std::string("/My Plug-Ins/F.plugin"), logFile}) {
            EXPECT_TRUE(memory.exists(path)) << path;
        }
    }
    controller.installAnalytics();
    EXPECT_THAT(fake.authorizations.unplanned, IsEmpty());
}

TEST_F(InstallFilesControllerTest, OneAuthorizationToExtendRightsServesTheWholeRun) {
    controller.install({photoshopHost()}, true);
    EXPECT_EQ(fake.authorizations.created, 1);
    EXPECT_THAT(fake.authorizations.obtainedFlags, ElementsAre(2U));
}

TEST_F(InstallFilesControllerTest, TheEditorsAreConfiguredOnlyWhenAskedFor) {
    controller.install({}, false);
    EXPECT_FALSE(memory.exists(editors));
}

TEST_F(InstallFilesControllerTest, WithoutAWindowTheListHasTheSiblingsAndNoPhotoshop) {
    controller.install({photoshopHost()}, true);
    EXPECT_EQ(memory.contents(editors + "/ExternalEditors.csv"),
              "/Applications/Quarrytone Inkvale 4.app,Inkvale 4,4,2,1003,100,ORIGINAL, \n");
}

TEST_F(InstallFilesControllerTest, AQuietRunKeepsItsAuthorizationAndStaysInProgress) {
    controller.install({}, true);
    EXPECT_EQ(fake.authorizations.destroyed, 0);
    EXPECT_TRUE(controller.copyInProgress());
    EXPECT_FALSE(controller.installComplete());
    controller.install({}, true);
    EXPECT_EQ(fake.authorizations.created, 1);
}

TEST_F(InstallFilesControllerTest, ASecondRunForgetsTheFirstAndGivesTheSameTree) {
    failItem("guide.txt");
    controller.install({photoshopHost()}, true);
    EXPECT_TRUE(controller.fileOpErrorOccurred());
    failItem("");
    controller.install({photoshopHost()}, true);
    EXPECT_FALSE(controller.fileOpErrorOccurred());
    const Lines installed = controller.installedPaths();
    const std::string log = memory.contents(logFile);
    const Lines tree = memory.paths();
    controller.install({photoshopHost()}, true);
    EXPECT_EQ(controller.installedPaths(), installed);
    EXPECT_EQ(memory.contents(logFile), log);
    EXPECT_EQ(memory.paths(), tree);
}

TEST_F(InstallFilesControllerTest, AFailedItemOfTheMirrorKeepsEveryHostOutAndTheLogIsWritten) {
    failItem("Tool.app");
    controller.install({photoshopHost(), customHost()}, true);
    EXPECT_TRUE(controller.fileOpErrorOccurred());
    EXPECT_THAT(controller.installedPaths(),
                ElementsAre(product + "/guide.txt", editors + "/ExternalEditors.csv"));
    EXPECT_EQ(memory.contents(logFile),
              product + "/guide.txt\n" + editors + "/ExternalEditors.csv\n");
    EXPECT_FALSE(memory.exists(manifest));
    EXPECT_THAT(operationsOf(fake), Contains(lsregisterCommand));
}

TEST_F(InstallFilesControllerTest, AFailedItemOfAHostLetsTheHostFinishAndKeepsLaterHostsOut) {
    failItem("run.jsx");
    controller.install({photoshopHost(), customHost()}, false);
    EXPECT_THAT(controller.installedPaths(),
                ElementsAre(tool, product + "/guide.txt", plugIns + "/F.plugin"));
    EXPECT_TRUE(memory.exists(logFile));
}

TEST_F(InstallFilesControllerTest, TheHostsThatAreLeftOutAreThoseOfTheRunItself) {
    failItem("Tool.app");
    controller.install({photoshopHost(), customHost()}, false);
    EXPECT_EQ(controller.leftOutHosts().size(), 2U);
    failItem("of nobody");
    controller.install({customHost()}, false);
    EXPECT_THAT(controller.leftOutHosts(), IsEmpty());
}

TEST_F(InstallFilesControllerTest, ARefusalAtTheFirstCommandLeavesTheFixedStepsAndNoHost) {
    refuseFromCommand(fake, 1);
    controller.install({photoshopHost(), customHost()}, true);
    EXPECT_TRUE(controller.authDenied());
    EXPECT_FALSE(controller.fileOpErrorOccurred());
    EXPECT_THAT(controller.installedPaths(), IsEmpty());
    EXPECT_THAT(
        operationsOf(fake),
        ElementsAreArray(joined(
            {{"copy " + mirror + tool + " " + tool, "/usr/sbin/chown -R tester:admin " + tool,
              "register " + tool, "/usr/bin/xattr -dr com.apple.quarantine " + tool},
             folderOperations(support + "/Acme"),
             folderOperations(product),
             folderOperations(editors),
             {"remove " + manifest, lsregisterCommand}})));
}

// The commands of the run are, in this order: chown, chmod and xattr for the tool, chown and chmod
// for the guide, lsregister, chown and chmod for the script, and so on.
struct RefusalRow {
    int place;
    Lines installed;
};

class InstallFilesControllerRefusedRun : public InstallFilesControllerTest,
                                         public testing::WithParamInterface<RefusalRow> {};

TEST_P(InstallFilesControllerRefusedRun, ListsWhatWasFinishedBefore) {
    refuseFromCommand(fake, GetParam().place);
    controller.install({photoshopHost(), customHost()}, false);
    EXPECT_TRUE(controller.authDenied());
    EXPECT_FALSE(controller.fileOpErrorOccurred());
    EXPECT_EQ(controller.installedPaths(), GetParam().installed);
    EXPECT_FALSE(memory.exists(manifest));
    EXPECT_FALSE(memory.exists("/My Plug-Ins"));
    EXPECT_THAT(operationsOf(fake), Contains(lsregisterCommand));
    EXPECT_THAT(fake.alerts.shown, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Commands, InstallFilesControllerRefusedRun,
    testing::Values(RefusalRow{2, {}}, RefusalRow{4, {tool}}, RefusalRow{5, {tool}},
                    RefusalRow{7, {tool, product + "/guide.txt"}},
                    RefusalRow{9, {tool, product + "/guide.txt", photoshop + "/Presets/run.jsx"}}),
    [](const auto& test) { return "RefusedFromCommand" + std::to_string(test.param.place); });

TEST_F(InstallFilesControllerTest, ARefusalOfWhatNobodyAsksAboutDoesNotStopTheRun) {
    // Nothing that somebody asks about follows the command: a refusal holds for all that follow it.
    EXPECT_FALSE(memory.removeAsAdministrator(mirror + product));
    refuseTool(fake, "/usr/bin/xattr");
    controller.install({}, false);
    EXPECT_FALSE(controller.authDenied());
    EXPECT_THAT(controller.installedPaths(), ElementsAre(tool));
}

TEST_F(InstallFilesControllerTest, WithoutAnyWayToTheRightsNothingIsDoneAtAll) {
    fake.authorizations.obtainable = false;
    controller.install({photoshopHost()}, true);
    EXPECT_THAT(fake.journal, IsEmpty());
    EXPECT_THAT(fake.log.lines, ElementsAre("SFAuthorization permit with rights error"));
    EXPECT_TRUE(controller.fileOpErrorOccurred());
    EXPECT_FALSE(controller.authDenied());
    EXPECT_FALSE(controller.successfulInstall());
    EXPECT_EQ(fake.authorizations.destroyed, 1);
}

TEST_F(InstallFilesControllerTest, AfterAFailedAuthorizationTheNextRunAsksForANewOne) {
    fake.authorizations.obtainable = false;
    controller.install({}, true);
    fake.authorizations.obtainable = true;
    controller.install({}, true);
    EXPECT_EQ(fake.authorizations.created, 2);
    EXPECT_FALSE(controller.fileOpErrorOccurred());
}

TEST_F(InstallFilesControllerTest, APayloadItemThatNoRuleInstallsIsSaidInTheSystemLogOnly) {
    memory.addFile(mirror + "/usr/local/lib/x");
    controller.install({}, false);
    EXPECT_THAT(fake.log.lines,
                Contains("This payload item is never installed: " + mirror + "/usr/local/lib/x"));
    EXPECT_THAT(memory.contents(logFile), Not(HasSubstr("/usr/local")));
}

TEST_F(InstallFilesControllerTest, ARunReadsEachTreeOfThePayloadOnce) {
    memory.addFile(payload + "/LIGHTROOM/a");
    FakeProgressIndicator indicator;
    controller.setProgressIndicator(&indicator);
    controller.install({photoshopHost(), photoshopHost(), customHost(),
                        LightRoomHostModel(fake.platform, "Lightroom")},
                       true);
    Lines looks = fake.files.looks;
    std::erase_if(looks,
                  [](const std::string& look) { return look.find(payload) == std::string::npos; });
    EXPECT_THAT(looks, ElementsAre("list " + payload, "readTree " + payload + "/HD",
                                   "readTree " + payload + "/PHOTOSHOP",
                                   "readTree " + payload + "/PHOTOSHOP_PLUGINS",
                                   "readTree " + payload + "/LIGHTROOM"));
    EXPECT_EQ(fake.files.measured, 0);
}

TEST_F(InstallFilesControllerTest, ABundleWithoutPayloadInstallsNothingAndKeepsTheOldLog) {
    memory.removeAsAdministrator(payload);
    memory.addFile(logFile, "/old\n");
    controller.install({photoshopHost(), customHost()}, false);
    EXPECT_THAT(controller.installedPaths(), IsEmpty());
    EXPECT_EQ(memory.contents(logFile), "/old\n");
    EXPECT_FALSE(controller.fileOpErrorOccurred());
}

TEST_F(InstallFilesControllerTest, TheLogIsWrittenAfterARunThatInstalledSomething) {
    EXPECT_FALSE(controller.installerLogIsWritten());
    controller.install({customHost()}, false);
    EXPECT_TRUE(controller.installerLogIsWritten());
}

TEST_F(InstallFilesControllerTest, TheLogIsNotWrittenAfterARunThatInstalledNothing) {
    controller.install({customHost()}, false);
    memory.removeAsAdministrator(payload);
    controller.install({customHost()}, false);
    EXPECT_FALSE(controller.installerLogIsWritten());
}

TEST_F(InstallFilesControllerTest, TheLogIsNotWrittenAfterARunThatCouldNotOpenIt) {
    controller.install({customHost()}, false);
    fake.files.setFault([](const RecordingFileManager::Operation& operation) {
        return operation.front() == "openForWriting"
                   ? std::make_error_code(std::errc::permission_denied)
                   : std::error_code();
    });
    controller.install({customHost()}, false);
    EXPECT_FALSE(controller.installerLogIsWritten());
}

TEST_F(InstallFilesControllerTest, TheLogIsNotWrittenAfterARunWithoutAuthorization) {
    Lines events;
    FakeMainController main(events);
    controller.didEnterWithModel(nullptr, nullptr, &main, 1);
    ASSERT_TRUE(controller.installerLogIsWritten());
    // The step has given its authorization back, so the next run asks for another one.
    fake.authorizations.obtainable = false;
    controller.install({customHost()}, false);
    EXPECT_FALSE(controller.installerLogIsWritten());
}

TEST_F(InstallFilesControllerTest, TheItemsThatFailedAreNamedUntilTheNextRun) {
    failItem("F.plugin");
    controller.install({customHost()}, false);
    EXPECT_THAT(controller.failedPaths(), ElementsAre("/My Plug-Ins/F.plugin"));
    fake.files.setFault(nullptr);
    fake.authorizations.works = nullptr;
    controller.install({customHost()}, false);
    EXPECT_THAT(controller.failedPaths(), IsEmpty());
}

TEST_F(InstallFilesControllerTest, ARunWithoutAuthorizationNamesNoItemThatFailed) {
    fake.authorizations.obtainable = false;
    controller.install({customHost()}, false);
    EXPECT_TRUE(controller.fileOpErrorOccurred());
    EXPECT_THAT(controller.failedPaths(), IsEmpty());
}

// A payload of 100 bytes in the mirror, 60 for a Photoshop and 40 for a custom folder.
class InstallFilesControllerProgress : public InstallFilesControllerTest {
  protected:
    InstallFilesControllerProgress() {
        memory.addFile(mirror + tool + "/Contents/x", std::string(70, 'x'));
        memory.addFile(mirror + product + "/guide.txt", std::string(30, 'x'));
        memory.addFile(payload + "/PHOTOSHOP/Presets/run.jsx", std::string(20, 'x'));
        memory.addFile(payload + "/PHOTOSHOP_PLUGINS/F.plugin/x", std::string(40, 'x'));
        controller.setProgressIndicator(&indicator);
        fake.files.setFault([this](const RecordingFileManager::Operation& operation) {
            if (operation.front() == "copy") beforeCopies.push_back(indicator.fractions.back());
            return std::error_code();
        });
    }

    FakeProgressIndicator indicator;
    std::vector<double> beforeCopies;  ///< what was shown when each copy began
};

TEST_F(InstallFilesControllerProgress, CountsTheBytesOfEverythingThatTheRunInstalls) {
    controller.install({photoshopHost(), customHost()}, true);
    EXPECT_THAT(beforeCopies, ElementsAre(0.0, 70 / 200.0, 100 / 200.0, 120 / 200.0, 160 / 200.0));
    EXPECT_EQ(indicator.fractions.back(), 1.0);
    EXPECT_TRUE(std::is_sorted(indicator.fractions.begin(), indicator.fractions.end()));
}

TEST_F(InstallFilesControllerProgress, TakesTheBytesFromThePlan) {
    controller.install({photoshopHost(), customHost()}, true);
    EXPECT_EQ(fake.files.measured, 0);
}

TEST_F(InstallFilesControllerProgress, StartsAnewWithTheNextRun) {
    controller.install({customHost()}, false);
    beforeCopies.clear();
    controller.install({}, false);
    EXPECT_THAT(beforeCopies, ElementsAre(0.0, 0.7));
    EXPECT_EQ(indicator.fractions.back(), 1.0);
}

TEST_F(InstallFilesControllerProgress, IsEmptyAlreadyWhileTheNextRunReadsThePayload) {
    controller.install({customHost()}, false);
    ASSERT_EQ(indicator.fractions.back(), 1.0);
    indicator.fractions.clear();
    controller.install({customHost()}, false);
    EXPECT_EQ(indicator.fractions.front(), 0.0);
    EXPECT_TRUE(std::is_sorted(indicator.fractions.begin(), indicator.fractions.end()));
}

TEST_F(InstallFilesControllerProgress, IsNotFullAfterARunThatFailed) {
    failItem("guide.txt");
    controller.install({customHost()}, false);
    EXPECT_EQ(indicator.fractions.back(), 100 / 140.0);
}

TEST_F(InstallFilesControllerProgress, IsNotFullAfterARefusal) {
    refuseFromCommand(fake, 1);
    controller.install({customHost()}, false);
    EXPECT_EQ(indicator.fractions.back(), 70 / 140.0);
}

TEST_F(InstallFilesControllerProgress, WithNothingToInstallIsFullAtTheEnd) {
    memory.removeAsAdministrator(payload);
    controller.install({customHost()}, false);
    EXPECT_EQ(indicator.fractions.back(), 1.0);
}

TEST_F(InstallFilesControllerProgress, IsToldByTheAdministratorsCopiesToo) {
    controller.install({}, false);
    ASSERT_NE(fake.authorizations.progressSink, nullptr);
    const auto before = indicator.fractions.size();
    fake.authorizations.progressSink->bytesCopied(0);
    EXPECT_EQ(indicator.fractions.size(), before + 1);
}

TEST_F(InstallFilesControllerProgress, ChangesNothingOfWhatTheRunDoes) {
    controller.install({photoshopHost(), customHost()}, true);
    EXPECT_THAT(operationsOf(fake),
                ElementsAreArray(joined({toolOperations(),
                                         productOperations(),
                                         editorsOperations(),
                                         {"remove " + manifest, lsregisterCommand},
                                         photoshopOperations(),
                                         customFolderOperations(),
                                         logOperations()})));
}

TEST_F(InstallFilesControllerProgress, WithoutAnIndicatorNobodyIsToldAndNoItemIsMeasuredByItself) {
    controller.setProgressIndicator(nullptr);
    EXPECT_EQ(fake.authorizations.progressSink, nullptr);
    indicator.fractions.assign({0.5});
    controller.install({customHost()}, false);
    EXPECT_THAT(indicator.fractions, ElementsAre(0.5));
    EXPECT_EQ(fake.files.measured, 0);
}

// The step in the window.

class InstallFilesControllerStep : public InstallFilesControllerTest {
  protected:
    InstallFilesControllerStep() {
        fake.eventLoop.duringTurn = [this] { events.emplace_back("turn"); };
        main.onNextView = [this] {
            movedWithSuccess = controller.successfulInstall();
            couldMove = controller.canProceed(1);
        };
        watch = main.observe([this](Observable::Moment moment, std::string_view property) {
            const bool will = moment == Observable::Moment::willChange;
            events.push_back((will ? "will " : "did ") + std::string(property));
            if (!will && property == "informativeText")
                texts.push_back(std::get<std::string>(model->informativeText()));
        });
    }
    void enter(std::int32_t direction) {
        controller.didEnterWithModel(model, view, &main, direction);
    }

    Lines events;
    Lines texts;  ///< of the model, as the window saw them
    bool movedWithSuccess = false;
    bool couldMove = false;
    FakeMainController main{events};
    Subscription watch;
    std::shared_ptr<InstallFilesModel> model = std::make_shared<InstallFilesModel>(fake.platform);
    std::shared_ptr<FakeView> view = std::make_shared<FakeView>();
};

const Lines inProgressEvents = {"will enableForward",  "will enableBackward", "will canProceed",
                                "will copyInProgress", "did enableForward",   "did enableBackward",
                                "did canProceed",      "did copyInProgress",  "turn"};
const Lines textEvents = {"will informativeText", "will mainLabelText", "did informativeText",
                          "did mainLabelText", "turn"};

TEST_F(InstallFilesControllerStep, EnteringForwardInstallsAnnouncesAndMovesOn) {
    main.selected = {customHost()};
    enter(1);
    EXPECT_THAT(events, ElementsAreArray(joined({inProgressEvents,
                                                 textEvents,
                                                 textEvents,
                                                 textEvents,
                                                 {"will successfulInstall"},
                                                 textEvents,
                                                 inProgressEvents,
                                                 {"next view", "did successfulInstall"}})));
    EXPECT_THAT(texts, ElementsAre("Installing Tool.app", "Installing guide.txt",
                                   "Installing F.plugin", "Done"));
    EXPECT_FALSE(view->hidden);
    EXPECT_TRUE(movedWithSuccess);
    EXPECT_TRUE(couldMove);
    EXPECT_TRUE(controller.enableForward());
    EXPECT_TRUE(controller.enableBackward());
    EXPECT_TRUE(controller.installComplete());
}

TEST_F(InstallFilesControllerStep, NothingMovesWhileARunIsGoingOn) {
    bool sawOpenStep = false;
    fake.eventLoop.duringTurn = [&] {
        if (texts.empty() || texts.back() == "Done") return;
        if (controller.enableForward() || controller.enableBackward() || controller.canProceed(1) ||
            controller.canProceed(-1) || !controller.copyInProgress()) {
            sawOpenStep = true;
        }
    };
    enter(1);
    EXPECT_FALSE(sawOpenStep);
    EXPECT_FALSE(controller.copyInProgress());
}

TEST_F(InstallFilesControllerStep, OnlyTheSelectedHostsAreInstalledAndTheEditorsWhenWanted) {
    main.found = {photoshopHost(), customHost()};
    main.selected = {customHost()};
    main.configureEditors = true;
    enter(1);
    EXPECT_FALSE(memory.exists(plugIns));
    EXPECT_TRUE(memory.exists("/My Plug-Ins/F.plugin"));
    // Found but not selected: a candidate for the list of editors all the same.
    EXPECT_THAT(memory.contents(editors + "/ExternalEditors.csv"),
                HasSubstr(",Adobe Photoshop CC 2019,9,"));
}

TEST_F(InstallFilesControllerStep, TheEditorsAreLeftAloneWhenNotWanted) {
    enter(1);
    EXPECT_FALSE(memory.exists(editors));
}

TEST_F(InstallFilesControllerStep, ItsOwnRequestMovesTheWizardOn) {
    enter(1);
    EXPECT_EQ(main.nextViewSender, &controller);
}

TEST_F(InstallFilesControllerStep, ANewRunIsNotCompleteFromItsFirstAnnouncementOn) {
    enter(1);
    ASSERT_TRUE(controller.installComplete());
    std::vector<bool> complete;
    const Subscription each = main.observe([&](Observable::Moment, std::string_view) {
        complete.push_back(controller.installComplete());
    });
    controller.install({}, false);
    EXPECT_THAT(complete, Not(IsEmpty()));
    EXPECT_THAT(complete, Each(false));
}

TEST_F(InstallFilesControllerStep, AFailureOfTheRunBeforeIsForgottenOnceTheNewOneIsInProgress) {
    failItem("guide.txt");
    enter(1);
    fake.files.setFault(nullptr);
    std::vector<bool> failed;
    const Subscription each = main.observe([&](Observable::Moment, std::string_view property) {
        if (property == "copyInProgress") failed.push_back(controller.fileOpErrorOccurred());
    });
    fake.authorizations.works = nullptr;
    controller.install({}, false);
    EXPECT_THAT(failed, ElementsAre(true, true));
    EXPECT_FALSE(controller.fileOpErrorOccurred());
}

TEST_F(InstallFilesControllerStep, TheSuccessIsAnnouncedBeforeAndAfterItChanges) {
    std::vector<bool> succeeded;
    const Subscription each = main.observe([&](Observable::Moment, std::string_view property) {
        if (property == "successfulInstall") succeeded.push_back(controller.successfulInstall());
    });
    enter(1);
    EXPECT_THAT(succeeded, ElementsAre(false, true));
}

TEST_F(InstallFilesControllerStep, AnAuthorizationThatCouldNotBeObtainedIsGoneBeforeThatIsSaid) {
    fake.authorizations.obtainable = false;
    std::vector<int> destroyed;
    const Subscription each = main.observe([&](Observable::Moment, std::string_view property) {
        if (property == "informativeText") destroyed.push_back(fake.authorizations.destroyed);
    });
    controller.didEnterWithModel(model, view, &main, 1);
    EXPECT_THAT(destroyed, Not(IsEmpty()));
    EXPECT_THAT(destroyed, Each(1));
}

TEST_F(InstallFilesControllerStep, TheAuthorizationEndsWithTheRunAndTheNextOneAsksAgain) {
    enter(1);
    EXPECT_EQ(fake.authorizations.destroyed, 1);
    enter(1);
    EXPECT_EQ(fake.authorizations.created, 2);
}

TEST_F(InstallFilesControllerStep, TheAuthorizationIsGoneBeforeTheWizardMovesOn) {
    int destroyedAtMove = 0;
    main.onNextView = [&] { destroyedAtMove = fake.authorizations.destroyed; };
    enter(1);
    EXPECT_EQ(destroyedAtMove, 1);
}

TEST_F(InstallFilesControllerStep, ARunWithoutRightsForgetsWhatTheRunBeforeItInstalled) {
    enter(1);
    ASSERT_FALSE(controller.installedPaths().empty());
    fake.authorizations.obtainable = false;
    enter(1);
    EXPECT_THAT(controller.installedPaths(), IsEmpty());
}

class InstallFilesControllerEnteredGoingBack : public InstallFilesControllerStep,
                                               public testing::WithParamInterface<int> {};

TEST_P(InstallFilesControllerEnteredGoingBack, OnlyShowsItself) {
    enter(GetParam());
    EXPECT_FALSE(view->hidden);
    EXPECT_THAT(fake.journal, IsEmpty());
    EXPECT_THAT(events, IsEmpty());
    EXPECT_EQ(fake.authorizations.created, 0);
}

INSTANTIATE_TEST_SUITE_P(Directions, InstallFilesControllerEnteredGoingBack,
                         testing::Values(0, -1, -3),
                         [](const auto& test) { return "By" + std::to_string(-test.param); });

TEST_F(InstallFilesControllerStep, LeavingHidesTheViewAndLetsModelAndViewGo) {
    enter(-1);
    EXPECT_GT(view.use_count(), 1);
    controller.didProceed(1);
    EXPECT_TRUE(view->hidden);
    EXPECT_EQ(view.use_count(), 1);
    EXPECT_EQ(model.use_count(), 1);
}

TEST_F(InstallFilesControllerStep, LeavingBackwardForgetsThatTheInstallationIsComplete) {
    enter(1);
    controller.didProceed(1);
    EXPECT_TRUE(controller.successfulInstall());
    controller.didProceed(-1);
    EXPECT_FALSE(controller.installComplete());
    EXPECT_FALSE(controller.successfulInstall());
}

TEST_F(InstallFilesControllerStep, LeavingInNoDirectionKeepsTheInstallationComplete) {
    enter(1);
    controller.didProceed(0);
    EXPECT_TRUE(controller.installComplete());
}

TEST_F(InstallFilesControllerStep, MovingOnMayLeaveTheStepBeforeEnteringItHasReturned) {
    main.onNextView = [this] { controller.didProceed(1); };
    enter(1);
    EXPECT_TRUE(view->hidden);
    EXPECT_EQ(model.use_count(), 1);
    EXPECT_EQ(events.back(), "did successfulInstall");
}

TEST_F(InstallFilesControllerStep, AFailedItemIsNoSuccessAndTheWizardMovesOn) {
    failItem("guide.txt");
    enter(1);
    EXPECT_FALSE(controller.installComplete());
    EXPECT_FALSE(movedWithSuccess);
    EXPECT_THAT(events, Contains("next view"));
}

TEST_F(InstallFilesControllerStep, ARefusalIsNoSuccessEvenThoughNoItemFailed) {
    refuseFromCommand(fake, 1);
    enter(1);
    EXPECT_TRUE(controller.installComplete());
    EXPECT_FALSE(controller.successfulInstall());
    EXPECT_FALSE(movedWithSuccess);
}

TEST_F(InstallFilesControllerStep, RightsThatCannotBeObtainedAreSaidAndAtOnceReplacedByDone) {
    fake.authorizations.obtainable = false;
    enter(1);
    EXPECT_THAT(texts, ElementsAre("No rights", "Done"));
    EXPECT_FALSE(controller.successfulInstall());
    EXPECT_FALSE(controller.copyInProgress());
    EXPECT_THAT(events, Contains("next view"));
}

TEST_F(InstallFilesControllerStep, ARunAfterAFailedOneCanSucceed) {
    failItem("guide.txt");
    enter(1);
    fake.files.setFault(nullptr);
    fake.authorizations.works = nullptr;
    enter(1);
    EXPECT_TRUE(controller.successfulInstall());
}

TEST_F(InstallFilesControllerStep, ARunAfterARefusedOneCanSucceed) {
    refuseFromCommand(fake, 1);
    enter(1);
    ASSERT_TRUE(controller.authDenied());
    fake.authorizations.status = nullptr;
    enter(1);
    EXPECT_FALSE(controller.authDenied());
    EXPECT_TRUE(controller.successfulInstall());
}

TEST_F(InstallFilesControllerStep, TheButtonsAreFreedBeforeTheAuthorizationIsGivenBack) {
    std::vector<int> givenBack;
    const Subscription each = main.observe([&](Observable::Moment, std::string_view property) {
        if (property == "enableForward") givenBack.push_back(fake.authorizations.destroyed);
    });
    enter(1);
    EXPECT_THAT(givenBack, ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(fake.authorizations.destroyed, 1);
}

// The operations that others call by their names on the controller.

TEST_F(InstallFilesControllerTest, ItsOperationsAreThoseOfTheEngine) {
    memory.addFile("/s/a");
    controller.ensureDirExists("/one/two");
    EXPECT_TRUE(memory.exists("/one/two"));
    controller.setAttributesRecursive("/s", {.owner = {}, .group = "staff", .permissions = {}});
    EXPECT_EQ(memory.node("/s/a")->group, "staff");
    EXPECT_TRUE(InstallFilesController::isFatalAuthCode(5530));
    EXPECT_FALSE(InstallFilesController::isFatalAuthCode(5529));
    FakeBundle bundle;
    bundle.information["CFBundleVersion"] = "1.2";
    EXPECT_EQ(InstallFilesController::versionFromBundle(bundle), DecimalNumber::parsed("10002"));
    EXPECT_TRUE(controller.isFileOkToInstallByBundleVersion("/s/a", "/missing"));
    EXPECT_TRUE(controller.isFileOkToInstallByModificationTime("/s/a", "/missing"));
}

TEST_F(InstallFilesControllerTest, ItsReportsFailTheRun) {
    controller.showFileErrorUI("/a");
    EXPECT_TRUE(controller.fileOpErrorOccurred());
    fake.alerts.answer = 1;
    EXPECT_FALSE(controller.fileManagerShouldProceedAfterError("error", "/a"));
}

TEST_F(InstallFilesControllerTest, ARunNeitherSearchesForEarlierCopiesNorWritesAnIdentifier) {
    memory.addFile("/Installer.app/Contents/SharedSupport/PlugIn/F.plugin");
    controller.install({photoshopHost()}, true);
    EXPECT_EQ(fake.fileQueries.created, 0);
    EXPECT_FALSE(memory.exists(support + "/Acme/entityresolver.guid"));
}

TEST_F(InstallFilesControllerTest, AfterARunsAuthorizationEarlierCopiesCanBeRemoved) {
    memory.addFile("/Installer.app/Contents/SharedSupport/PlugIn/F.plugin");
    memory.addFile("/My Plug-Ins/old/F.plugin");
    fake.fileQueries.found["F.plugin"] = {{"F.plugin", "/My Plug-Ins/old/F.plugin"}};
    controller.install({}, false);
    controller.unInstallForHost(customHost());
    EXPECT_FALSE(memory.exists("/My Plug-Ins/old/F.plugin"));
    EXPECT_FALSE(controller.authDenied());
}

TEST_F(InstallFilesControllerTest, AfterARunsAuthorizationTheIdentifierCanBeWritten) {
    controller.install({}, false);
    controller.installAnalytics();
    EXPECT_EQ(memory.contents(support + "/Acme/entityresolver.guid").size(), 37U);
}

TEST_F(InstallFilesControllerTest, ARefusedRemovalOfEarlierCopiesIsARefusalOfTheRun) {
    memory.addFile("/Installer.app/Contents/SharedSupport/PlugIn/F.plugin");
    fake.fileQueries.found["F.plugin"] = {{"F.plugin", "/My Plug-Ins/F.plugin"}};
    controller.unInstallForHost(customHost());
    EXPECT_TRUE(controller.authDenied());
}

TEST_F(InstallFilesControllerTest, OutsideOfARunItsPrivilegedCommandsAreRefused) {
    memory.addFile("/s/a");
    controller.copyHostFilesFrom("/s", "/to");
    EXPECT_TRUE(controller.authDenied());
    EXPECT_THAT(controller.installedPaths(), IsEmpty());
    EXPECT_THAT(operationsOf(fake), Contains("copy /s/a /to/a"));
}

}  // namespace
}  // namespace installer::test
