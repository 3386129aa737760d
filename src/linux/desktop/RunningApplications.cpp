#include "linux/desktop/RunningApplications.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <poll.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "linux/desktop/ApplicationName.h"
#include "linux/desktop/ProcessFacts.h"
#include "ports/DescriptorWatcher.h"

namespace installer {

namespace {

/// Makes room for a descriptor of each process of a busy desktop. Gives the first descriptor that
/// is no longer to be used for that.
int raisedDescriptorLimit() {
    constexpr rlim_t plenty = 4096;
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return 0;
    if (limit.rlim_cur < plenty) {
        const rlimit raised{std::min(plenty, limit.rlim_max), limit.rlim_max};
        if (::setrlimit(RLIMIT_NOFILE, &raised) == 0) limit = raised;
    }
    return static_cast<int>(std::min(limit.rlim_cur, plenty) / 4 * 3);
}

bool hasEnded(const FileDescriptor& process) {
    pollfd polled{process.get(), POLLIN, 0};
    return ::poll(&polled, 1, 0) > 0;
}

}  // namespace

RunningApplications::RunningApplications(DescriptorWatcher& watcher, Bundles& bundles)
    : watcher_(watcher), bundles_(bundles), descriptorLimit_(raisedDescriptorLimit()) {}

std::vector<std::string> RunningApplications::scan() {
    watched_.clear();
    std::vector<std::string> names;
    for (const pid_t number : listedProcesses()) {
        // Opened before its facts are read, the descriptor shows whether they are still those of
        // the same process.
        FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, number, 0)));
        if (!process && errno == ESRCH) continue;
        const auto facts = processFacts(number);
        if (!facts || (process && hasEnded(process))) continue;
        std::string name = applicationName(*facts, bundles_);
        if (name.empty()) continue;
        if (process && process.get() < descriptorLimit_) watch(std::move(process), name);
        names.push_back(std::move(name));
    }
    return names;
}

Subscription RunningApplications::onTerminated(
    std::function<void(const std::string& name)> handler) {
    return observers_.add(std::move(handler));
}

void RunningApplications::watch(FileDescriptor process, const std::string& name) {
    const int number = process.get();
    Subscription end = watcher_.watch(number, [this, number] { ended(number); });
    watched_.insert_or_assign(number, Watched{std::move(process), name, std::move(end)});
}

void RunningApplications::ended(int process) {
    const auto node = watched_.extract(process);
    if (node.empty()) return;
    // A handler may scan anew, and may end this object's life.
    const std::string name = node.mapped().name;
    node.mapped().end.cancel();
    observers_.call(name);
}

}  // namespace installer
