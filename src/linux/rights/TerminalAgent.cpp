#include "linux/rights/TerminalAgent.h"

#include <array>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include "privileged/system/AwaitReadable.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

TerminalAgent::TerminalAgent(SpawnRequest command, const std::function<void()>& whileWaiting) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return;
    const FileDescriptor ours(ends[0]);
    FileDescriptor theirs(ends[1]);
    command.standardOutput = theirs.get();
    const Result<pid_t> process = spawn(command);
    if (!process) return;
    process_ = process.value();
    theirs.reset();
    // The agent writes nothing: it closes its end when it is registered, or when it exits.
    awaitReadable(ours.get(), whileWaiting);
}

TerminalAgent::~TerminalAgent() {
    if (process_ < 0) return;
    ::kill(process_, SIGTERM);
    static_cast<void>(waitForEnd(process_));
}

}  // namespace installer
