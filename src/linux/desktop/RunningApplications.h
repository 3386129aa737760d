#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "foundation/observers/ObserverList.h"
#include "foundation/observers/Subscription.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

class Bundles;
class DescriptorWatcher;

/// What runs on the machine, for whichever user, and the ends of it. Every process counts as an
/// application but the kernel's threads; one that has ended does not, even while its parent has
/// not asked for its exit status.
///
/// Ends are watched through descriptors of the processes, without polling. Where the kernel has
/// none (before Linux 5.3, or in a sandbox that forbids them) nothing is watched. A quarter of the
/// descriptors that this process may have is left for its other work: beyond that, further
/// processes are listed and not watched.
class RunningApplications {
  public:
    /// Raises the number of descriptors that this process may have, as far as it may do so itself.
    RunningApplications(DescriptorWatcher& watcher, Bundles& bundles);

    /// The applications' names, one for each process, in the kernel's order. From now on exactly
    /// these are watched.
    [[nodiscard]] std::vector<std::string> scan();

    /// The handler may scan anew.
    [[nodiscard]] Subscription onTerminated(std::function<void(const std::string& name)> handler);

  private:
    struct Watched {
        FileDescriptor process;
        std::string name;
        Subscription end;  ///< the last member: it goes before the descriptor is closed
    };

    void watch(FileDescriptor process, const std::string& name);
    void ended(int process);

    DescriptorWatcher& watcher_;
    Bundles& bundles_;
    int descriptorLimit_;
    std::map<int, Watched> watched_;  ///< by descriptor
    ObserverList<std::string> observers_;
};

}  // namespace installer
