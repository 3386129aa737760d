#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "app/MainWindow.h"
#include "app/QuietInstallation.h"
#include "app/SetupController.h"
#include "app/texts/WindowTexts.h"
#include "foundation/observers/NotificationCenter.h"
#include "foundation/text/Format.h"
#include "foundation/values/Paths.h"
#include "linux/bundle/LinuxBundle.h"
#include "linux/bundle/PackageLayout.h"
#include "linux/desktop/LinuxApplicationDatabase.h"
#include "linux/desktop/LinuxWorkspace.h"
#include "linux/display/DisplayAlerts.h"
#include "linux/display/PersonMessage.h"
#include "linux/display/WindowModuleLoader.h"
#include "linux/files/LinuxFileManager.h"
#include "linux/files/LinuxFileQuery.h"
#include "linux/files/LinuxSearchPaths.h"
#include "linux/log/LinuxSystemLog.h"
#include "linux/process/AtExit.h"
#include "linux/process/EndSignals.h"
#include "linux/process/LinuxChildProcess.h"
#include "linux/process/PollEventLoop.h"
#include "linux/process/ProcessSetup.h"
#include "linux/process/SystemClock.h"
#include "linux/rights/LinuxAuthorization.h"
#include "linux/seal/BundleSeal.h"
#include "linux/settings/LinuxPreferencesStore.h"
#include "ports/Platform.h"
#include "ports/window/InterfaceLoader.h"
#include "ports/window/WindowModule.h"
#include "ports/window/WindowPlatform.h"
#include "product/CouldNotOpenAlert.h"

// Start-up: the one place that knows which adapters the core runs on.

namespace {

using namespace installer;

constexpr std::string_view quietArgument = "-quiet";
constexpr const char* mainWindowName = "MainWindow";

std::string program(const std::string& bundleFolder, const std::string& name) {
    return packageProgram(bundleFolder, name).value_or("");
}

/// Tells the user, before a password is asked for, which product asks and what for.
AdministratorAccess administratorAccess(const std::string& bundleFolder, const Bundle& bundle,
                                        const LinuxSearchPaths& searchPaths,
                                        const LinuxFileManager& files, SystemLog& log) {
    return {.helper = {.path = program(bundleFolder, "privileged-helper"),
                       .volume = searchPaths.targetVolume(),
                       .home = searchPaths.homeOnRunningSystem()},
            .reason = authorizationReason(bundle),
            .folderWords = {.heading = authorizationFolders(bundle),
                            .more = authorizationMoreFolders(bundle)},
            .announce = [&log](std::string_view line) { log.log(line); },
            .finishedTree = &files.finishedTree()};
}

/// The adapters that are the same with and without a window.
struct Machine {
    Machine(std::string itsBundleFolder, LinuxSearchPaths itsSearchPaths, SystemLog& itsLog)
        : bundleFolder(std::move(itsBundleFolder)),
          log(itsLog),
          searchPaths(std::move(itsSearchPaths)),
          bundle(bundleFolder, searchPaths.preferredLanguages(), log),
          bundles(searchPaths.preferredLanguages(), log),
          files(log),
          authorizations(administratorAccess(bundleFolder, bundle, searchPaths, files, log)),
          preferences(searchPaths, log),
          applications(searchPaths, bundles, log) {}

    [[nodiscard]] Platform platform(FileQueries& fileQueries, ChildProcesses& processes,
                                    EventLoop& eventLoop, Alerts& alerts, Clock& clock) {
        return {files,       fileQueries, authorizations, processes,    eventLoop,
                preferences, bundle,      bundles,        searchPaths,  applications,
                alerts,      log,         clock,          notifications};
    }

    [[nodiscard]] std::unique_ptr<WindowModule> window(
        std::function<void(const std::string& address)> openLink) {
        return loadWindowModule(bundleFolder, {.executablePath = program(bundleFolder, "Installer"),
                                               .bundle = bundle,
                                               .files = files,
                                               .log = log,
                                               .openLink = std::move(openLink)});
    }

    std::string bundleFolder;
    SystemLog& log;
    LinuxSearchPaths searchPaths;
    LinuxBundle bundle;
    LinuxBundles bundles;
    LinuxFileManager files;
    LinuxAuthorizations authorizations;
    LinuxPreferencesStore preferences;
    LinuxApplicationDatabase applications;
    NotificationCenter notifications;
};

/// Null, with the reason in the log, if the executable is in no bundle or in one that is not as it
/// was signed, or if the environment names a target volume that is no folder.
std::unique_ptr<Machine> makeMachine(SystemLog& log) {
    const std::optional<std::string> bundleFolder = LinuxBundle::runningBundleFolder();
    if (!bundleFolder) {
        log.log("The installer must be started from its bundle: there is nothing to install");
        return nullptr;
    }
    if (const auto problem = brokenSealOf(*bundleFolder)) {
        log.log(*problem + "; nothing is installed. Please download the installer again");
        return nullptr;
    }
    Result<LinuxSearchPaths> searchPaths = LinuxSearchPaths::fromEnvironment(processEnvironment());
    if (!searchPaths) {
        const std::string volume = processEnvironment()(targetVolumeVariable).value_or("");
        log.log(std::string(targetVolumeVariable) + " names no folder to install onto: " + volume +
                " (" + searchPaths.error().message() + ")");
        return nullptr;
    }
    return std::make_unique<Machine>(*bundleFolder, std::move(searchPaths).value(), log);
}

/// The installation without a window. An alert may still be shown on a display.
class QuietApplication {
  public:
    explicit QuietApplication(Machine& machine) : machine_(machine) {}

    void run() { installQuietly(platform_); }

  private:
    [[nodiscard]] WindowModule* loadWindow() {
        // Nothing but alerts is shown, and these have no links.
        window_ = machine_.window([](const std::string& /*address*/) {});
        return window_.get();
    }

    Machine& machine_;
    PollEventLoop eventLoop_;
    SystemClock clock_;
    LinuxFileQueries fileQueries_{eventLoop_};
    LinuxChildProcesses processes_{eventLoop_};
    std::unique_ptr<WindowModule> window_;
    DisplayAlerts alerts_{machine_.log, processEnvironment(), [this] { return loadWindow(); }};
    Platform platform_ = machine_.platform(fileQueries_, processes_, eventLoop_, alerts_, clock_);
};

/// The installation with a window, over the adapters that the window module brings.
class WindowApplication {
  public:
    WindowApplication(Machine& machine, WindowModule& window)
        : machine_(machine),
          window_(window),
          fileQueries_(window.descriptors()),
          processes_(window.descriptors()),
          workspace_(window.descriptors(), machine.bundles, machine.log),
          platform_{{machine.platform(fileQueries_, processes_, window.eventLoop(), window.alerts(),
                                      window.clock())},
                    window.interfaces(),
                    window.folderPanel(),
                    workspace_,
                    window.clipboard()} {}

    void openLink(const std::string& address) {
        if (workspace_.openAddress(address)) return;
        // The alert has one button, so the answer is ignored.
        static_cast<void>(platform_.alerts.runModal(couldNotOpenAlert(platform_.bundle, address)));
    }

    /// Returns when the window has closed; false, with the reason in the log, when its description
    /// is of no use.
    [[nodiscard]] bool run() {
        SetupController controller(platform_);
        std::unique_ptr<Interface> mainWindow =
            platform_.interfaces.load(mainWindowName, controller);
        if (!mainWindow) return false;
        if (const auto part = missingPartOfMainWindow(*mainWindow)) {
            machine_.log.log(formatted("The description %@ has no usable %@",
                                       {std::string(mainWindowName), *part}));
            return false;
        }
        // The toolkit ends the process itself when the display is gone.
        const AtExit whenDisplayIsGone([this] {
            saveSettings();
            // The window's objects cannot be destroyed without the display.
            std::_Exit(1);
        });
        const EndSignals endSignals(window_.descriptors(), [this, &controller] {
            saveSettings();
            controller.endSoon();
        });
        controller.awakeFromNib(std::move(mainWindow));
        window_.run();
        saveSettings();
        return true;
    }

  private:
    void saveSettings() {
        machine_.notifications.post({applicationWillTerminate, nullptr, {}});
        // Also writes the values that were set through objects which no longer exist.
        if (!machine_.preferences.synchronizeAll()) {
            machine_.log.log("The settings could not be saved");
        }
    }

    Machine& machine_;
    WindowModule& window_;
    LinuxFileQueries fileQueries_;
    LinuxChildProcesses processes_;
    LinuxWorkspace workspace_;
    WindowPlatform platform_;
};

/// False, with the reason in the log, when no window can be shown.
bool runInWindow(Machine& machine) {
    // Links are opened through the workspace, which is made later: it needs the event loop.
    std::function<void(const std::string& address)> openLink;
    const auto window = machine.window([&openLink](const std::string& address) {
        if (openLink) openLink(address);
    });
    if (!window) return false;
    WindowApplication application(machine, *window);
    openLink = [&application](const std::string& address) { application.openLink(address); };
    return application.run();
}

/// The quiet installation ends with success whatever happened; what did happen is in the logs.
int quietMain(SystemLog& log) {
    try {
        if (const auto machine = makeMachine(log)) QuietApplication(*machine).run();
    } catch (const std::exception& error) {
        log.log(std::string("The installation was broken off: ") + error.what());
    }
    return 0;
}

/// Keeps what was logged last, for a person who sees no log.
class RememberingLog final : public SystemLog {
  public:
    explicit RememberingLog(SystemLog& log) : log_(log) {}

    void log(std::string_view line) override {
        log_.log(line);
        before_ = std::exchange(last_, std::string(line));
    }
    [[nodiscard]] std::string lastLines() const {
        return before_.empty() ? last_ : before_ + "\n\n" + last_;
    }

  private:
    SystemLog& log_;
    std::string before_;
    std::string last_;
};

/// False, with the reason in the log, when no window was shown.
bool showWindow(SystemLog& log) {
    try {
        const auto machine = makeMachine(log);
        if (!machine) return false;
        if (runInWindow(*machine)) return true;
        log.log(
            "The installer cannot show a window. Start it with -quiet as its first argument to "
            "install into every Photoshop that is found, without any question");
    } catch (const std::exception& error) {
        log.log(std::string("The installer was broken off: ") + error.what());
    }
    return false;
}

int windowMain(SystemLog& log) {
    RememberingLog remembering(log);
    if (showWindow(remembering)) return 0;
    showWithoutToolkit(remembering.lastLines(), processEnvironment());
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    prepareProcess();
    LinuxSystemLog log("Installer");
    // An exact comparison of the first argument: no other letter case, no other position.
    return argc >= 2 && argv[1] == quietArgument ? quietMain(log) : windowMain(log);
}
