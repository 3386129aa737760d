#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

#include "foundation/observers/ObserverList.h"
#include "foundation/observers/Subscription.h"
#include "linux/process/Environment.h"
#include "ports/window/Workspace.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

class Bundles;
class DescriptorWatcher;
struct ProcessFacts;

/// The applications of the person at this machine, and their ends: that person's processes that
/// have a name (`applicationName`). The installer's own programs do not count, since it would wait
/// for its own end, nor does a process that has ended while its parent has not asked for its exit
/// status.
///
/// Ends that follow one another closely are told together, at most five times a second, and all
/// handlers of these ends see one scan: a machine on which many programs end is not scanned for
/// each.
///
/// Ends are watched through descriptors of the processes, without polling. Where the kernel has
/// none (before Linux 5.3, or in a sandbox that forbids them) nothing is watched. A quarter of the
/// descriptors that this process may have is left for its other work: beyond that, further
/// processes are listed and not watched.
class RunningApplications {
  public:
    /// Raises the number of descriptors that this process may have, as far as it may do so itself.
    RunningApplications(DescriptorWatcher& watcher, Bundles& bundles,
                        Environment environment = processEnvironment());

    /// The applications' names, one for each process, in the kernel's order. From now on exactly
    /// these are watched, beside those whose end has not been told yet.
    [[nodiscard]] std::vector<std::string> scan();

    /// Whose it is, and the icon of its package or of its entry in the menus, for the first of that
    /// name in the last scan; an empty face when it has ended since.
    [[nodiscard]] ApplicationFace faceOf(const std::string& name);

    /// The handler may scan anew.
    [[nodiscard]] Subscription onTerminated(std::function<void(const std::string& name)> handler);

  private:
    [[nodiscard]] Image iconOf(const ProcessFacts& facts, const std::string& name);
    struct Watched {
        FileDescriptor process;
        std::string name;
        Subscription end;  ///< the last member: it goes before the descriptor is closed
    };

    [[nodiscard]] std::vector<std::string> scanned();
    [[nodiscard]] bool isOwn(const ProcessFacts& facts) const;
    void watch(FileDescriptor process, const std::string& name);
    void ended(int process);
    void tellSoon();
    void tell();

    DescriptorWatcher& watcher_;
    Bundles& bundles_;
    Environment environment_;
    int descriptorLimit_;
    std::optional<std::string> ownPackage_;
    std::map<int, Watched> watched_;                     ///< by descriptor
    std::vector<std::pair<pid_t, std::string>> listed_;  ///< the processes of the last scan

    std::map<std::pair<std::string, std::string>, Image> icons_;  ///< by program and name

    std::vector<std::string> untold_;  ///< the names of those whose ends are told next
    FileDescriptor timer_;
    Subscription timerWatch_;
    std::chrono::steady_clock::time_point lastTold_;
    bool isTimerSet_ = false;
    bool isTelling_ = false;
    std::optional<std::vector<std::string>> scanWhileTelling_;
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
    ObserverList<std::string> observers_;
};

}  // namespace installer
