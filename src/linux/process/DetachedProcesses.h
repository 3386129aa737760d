#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

#include "foundation/observers/Subscription.h"
#include "foundation/values/Result.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

class DescriptorWatcher;

/// A program that was started on its own: it has a session of its own and nothing on its standard
/// streams, and outlives this process.
class DetachedProcess {
  public:
    explicit DetachedProcess(pid_t process);

    /// Asks it to end. Nothing when it has ended.
    void terminate() const;

  private:
    friend class DetachedProcesses;

    pid_t process_;
    /// Empty if no descriptor was left; then the process is never waited for, and its id is not
    /// reused.
    FileDescriptor descriptor_;
};

/// Starts such programs, and waits for the ended ones while the event loop turns, so that none of
/// them stays in the system's list.
class DetachedProcesses {
  public:
    explicit DetachedProcesses(DescriptorWatcher& watcher) : watcher_(watcher) {}

    /// Called with the wait status of a program that has ended. May destroy the
    /// `DetachedProcesses`.
    using WhenEnded = std::function<void(int waitStatus)>;

    /// Not through a shell. The result says whether it started, not how it ends: `whenEnded` is
    /// told of that while the event loop turns, as long as this object lives.
    [[nodiscard]] Result<std::shared_ptr<const DetachedProcess>> start(
        const std::string& program, const std::vector<std::string>& arguments,
        WhenEnded whenEnded = {});

  private:
    struct Watched {
        std::shared_ptr<const DetachedProcess> process;
        WhenEnded whenEnded;
        Subscription end;  ///< the last member: it goes before the descriptor is closed
    };

    void ended(int descriptor);

    DescriptorWatcher& watcher_;
    std::map<int, Watched> running_;  ///< by descriptor
};

}  // namespace installer
