#pragma once

#include <chrono>

#include "foundation/observers/ObserverList.h"
#include "linux/desktop/RunningApplications.h"
#include "linux/process/DetachedProcesses.h"
#include "linux/process/Environment.h"
#include "ports/window/Workspace.h"

namespace installer {

class Bundles;
class DescriptorWatcher;
class SystemLog;

/// The user's desktop by way of `xdg-open`, which every desktop has, and of the kernel's list of
/// processes. What is started here lives on when the installer ends, and never shares its
/// terminal.
class LinuxWorkspace final : public Workspace {
  public:
    /// How long an opener's end may tell that it has failed.
    static constexpr std::chrono::seconds openerTime{10};

    /// `environment` says where programs are found (PATH). All others outlive this object.
    LinuxWorkspace(DescriptorWatcher& watcher, Bundles& bundles, SystemLog& log,
                   Environment environment = processEnvironment(),
                   std::chrono::steady_clock::duration timeOfOpeners = openerTime);

    /// An address begins with a scheme (a letter, then letters, digits, "+", "-" and ".") and a
    /// colon.
    bool openAddress(const std::string& address) override;
    /// The path is absolute, and there is something at it.
    bool openFile(const std::string& path) override;
    /// An opener that ends with an error within the time. One that runs on is taken to have opened
    /// what it was to open: it may be the browser itself, which ends as it likes.
    [[nodiscard]] Subscription onOpeningFailed(
        std::function<void(const std::string& addressOrPath)> handler) override;

    [[nodiscard]] std::vector<std::string> runningApplications() override;
    [[nodiscard]] ApplicationFace faceOfRunningApplication(const std::string& name) override;
    [[nodiscard]] Subscription onApplicationTerminated(
        std::function<void(const std::string& name)> handler) override;

    /// Runs the package's `namedProgram`, else its program that has the package's name without the
    /// suffix. Nothing here can hide a program's windows; its arguments do.
    [[nodiscard]] std::unique_ptr<LaunchedApplication> launchHidden(
        const std::string& path, const std::vector<std::string>& arguments) override;

    /// The distribution's own name for itself, the kernel's version and the processor.
    [[nodiscard]] std::string systemDescription() override;

    /// As `applicationIcon` finds it.
    [[nodiscard]] Image iconOfFile(const std::string& path) override;

  private:
    bool open(const std::string& addressOrPath);
    void openerEnded(const std::string& addressOrPath, int waitStatus);

    Bundles& bundles_;
    SystemLog& log_;
    Environment environment_;
    std::chrono::steady_clock::duration timeOfOpeners_;
    ObserverList<const std::string&> failedOpenings_;
    DetachedProcesses processes_;
    RunningApplications applications_;
};

}  // namespace installer
