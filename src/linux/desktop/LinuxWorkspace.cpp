#include "linux/desktop/LinuxWorkspace.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "linux/bundle/PackageLayout.h"
#include "linux/desktop/ApplicationIcon.h"
#include "linux/desktop/SystemDescription.h"
#include "ports/Bundle.h"
#include "ports/SystemLog.h"

namespace installer {

namespace {

constexpr const char* opener = "xdg-open";

bool isAsciiLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool isOfScheme(char character) {
    const bool isDigit = character >= '0' && character <= '9';
    return isAsciiLetter(character) || isDigit || character == '+' || character == '-' ||
           character == '.';
}

bool hasScheme(std::string_view address) {
    const auto colon = address.find(':');
    if (colon == std::string_view::npos || colon == 0 || colon + 1 == address.size()) return false;
    const std::string_view scheme = address.substr(0, colon);
    return isAsciiLetter(scheme.front()) && std::all_of(scheme.begin(), scheme.end(), isOfScheme);
}

bool isProgram(const std::string& path) {
    struct stat status{};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::access(path.c_str(), X_OK) == 0;
}

/// Relative folders of PATH are passed over: they would depend on where the installer was started.
std::optional<std::string> programOnPath(const std::string& name, const Environment& environment) {
    for (const std::string& folder : split(environment("PATH").value_or(""), ':')) {
        if (!folder.starts_with('/')) continue;
        std::string path = joinPath(folder, name);
        if (isProgram(path)) return path;
    }
    return std::nullopt;
}

std::optional<std::string> programOf(const std::string& package, const Bundle& bundle) {
    if (auto named = namedProgram(package, bundle)) return named;
    const std::string folder = lastPathComponent(package);
    return packageProgram(package, folder.substr(0, folder.rfind('.')));
}

class LaunchedProcess : public LaunchedApplication {
  public:
    explicit LaunchedProcess(std::shared_ptr<const DetachedProcess> process)
        : process_(std::move(process)) {}
    void terminate() override { process_->terminate(); }

  private:
    std::shared_ptr<const DetachedProcess> process_;
};

}  // namespace

LinuxWorkspace::LinuxWorkspace(DescriptorWatcher& watcher, Bundles& bundles, SystemLog& log,
                               Environment environment,
                               std::chrono::steady_clock::duration timeOfOpeners)
    : bundles_(bundles),
      log_(log),
      environment_(std::move(environment)),
      timeOfOpeners_(timeOfOpeners),
      processes_(watcher),
      applications_(watcher, bundles, environment_) {}

bool LinuxWorkspace::openAddress(const std::string& address) {
    if (hasScheme(address)) return open(address);
    log_.log("Could not open \"" + address + "\": it is no address");
    return false;
}

bool LinuxWorkspace::openFile(const std::string& path) {
    if (path.starts_with('/') && ::access(path.c_str(), F_OK) == 0) return open(path);
    log_.log("Could not open \"" + path + "\": there is no such file");
    return false;
}

bool LinuxWorkspace::open(const std::string& addressOrPath) {
    const auto program = programOnPath(opener, environment_);
    if (!program) {
        log_.log("Could not open " + addressOrPath + ": there is no " + opener);
        return false;
    }
    const auto process = processes_.start(
        *program, {addressOrPath},
        [this, addressOrPath, begin = std::chrono::steady_clock::now()](int waitStatus) {
            if (std::chrono::steady_clock::now() - begin >= timeOfOpeners_) return;
            openerEnded(addressOrPath, waitStatus);
        });
    if (!process) {
        log_.log("Could not open " + addressOrPath + ": " + process.error().message());
    }
    return static_cast<bool>(process);
}

void LinuxWorkspace::openerEnded(const std::string& addressOrPath, int waitStatus) {
    if (waitStatus == 0) return;
    const std::string how = WIFEXITED(waitStatus)
                                ? "status " + std::to_string(WEXITSTATUS(waitStatus))
                                : "signal " + std::to_string(WTERMSIG(waitStatus));
    log_.log("Could not open " + addressOrPath + ": " + opener + " has ended with " + how);
    failedOpenings_.call(addressOrPath);
}

Subscription LinuxWorkspace::onOpeningFailed(
    std::function<void(const std::string& addressOrPath)> handler) {
    return failedOpenings_.add(std::move(handler));
}

std::vector<std::string> LinuxWorkspace::runningApplications() {
    return applications_.scan();
}

ApplicationFace LinuxWorkspace::faceOfRunningApplication(const std::string& name) {
    return applications_.faceOf(name);
}

Subscription LinuxWorkspace::onApplicationTerminated(
    std::function<void(const std::string& name)> handler) {
    return applications_.onTerminated(std::move(handler));
}

std::unique_ptr<LaunchedApplication> LinuxWorkspace::launchHidden(
    const std::string& path, const std::vector<std::string>& arguments) {
    const auto bundle = path.starts_with('/') ? bundles_.open(path) : nullptr;
    const auto program = bundle ? programOf(path, *bundle) : std::nullopt;
    if (!program) {
        log_.log("Could not start " + path + ": it is no application");
        return nullptr;
    }
    auto process = processes_.start(*program, arguments);
    if (!process) {
        log_.log("Could not start " + *program + ": " + process.error().message());
        return nullptr;
    }
    return std::make_unique<LaunchedProcess>(std::move(process).value());
}

std::string LinuxWorkspace::systemDescription() {
    return installer::systemDescription();
}

Image LinuxWorkspace::iconOfFile(const std::string& path) {
    return applicationIcon(path, bundles_);
}

}  // namespace installer
