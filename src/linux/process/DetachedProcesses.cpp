#include "linux/process/DetachedProcesses.h"

#include <cerrno>
#include <utility>

#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ports/DescriptorWatcher.h"
#include "privileged/system/Spawn.h"

namespace installer {

DetachedProcess::DetachedProcess(pid_t process)
    : process_(process), descriptor_(static_cast<int>(::syscall(SYS_pidfd_open, process, 0))) {}

void DetachedProcess::terminate() const {
    if (descriptor_) {
        ::syscall(SYS_pidfd_send_signal, descriptor_.get(), SIGTERM, nullptr, 0);
    } else {
        ::kill(process_, SIGTERM);
    }
}

Result<std::shared_ptr<const DetachedProcess>> DetachedProcesses::start(
    const std::string& program, const std::vector<std::string>& arguments, WhenEnded whenEnded) {
    SpawnRequest request;
    request.path = program;
    request.arguments = arguments;
    request.session = SpawnRequest::Session::itsOwn;
    const Result<pid_t> number = spawn(request);
    if (!number) return number.error();
    auto process = std::make_shared<const DetachedProcess>(number.value());
    if (process->descriptor_) {
        const int descriptor = process->descriptor_.get();
        Subscription end = watcher_.watch(descriptor, [this, descriptor] { ended(descriptor); });
        running_.insert_or_assign(descriptor,
                                  Watched{process, std::move(whenEnded), std::move(end)});
    }
    return process;
}

void DetachedProcesses::ended(int descriptor) {
    const auto node = running_.extract(descriptor);
    if (node.empty()) return;
    int status = 0;
    pid_t waitedFor = 0;
    do {
        waitedFor = ::waitpid(node.mapped().process->process_, &status, 0);
    } while (waitedFor < 0 && errno == EINTR);
    if (waitedFor > 0 && node.mapped().whenEnded) node.mapped().whenEnded(status);
}

}  // namespace installer
