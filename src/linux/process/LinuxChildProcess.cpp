#include "linux/process/LinuxChildProcess.h"

#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "foundation/observers/ObserverList.h"
#include "privileged/system/FileDescriptor.h"
#include "privileged/system/Spawn.h"

namespace installer {
namespace {

constexpr std::size_t mostAtOnce = std::size_t{1} << 20U;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// Reading end of a pipe, and whether a notice of data was requested.
struct Reader {
    FileDescriptor descriptor;
    bool armed = false;
    bool atEnd = false;
    ObserverList<> observers;
    Subscription watched;

    [[nodiscard]] bool readable() const {
        pollfd polled{descriptor.get(), POLLIN, 0};
        return descriptor && ::poll(&polled, 1, 0) > 0;
    }
};

std::error_code makePipe(FileDescriptor& reading, FileDescriptor& writing) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return lastError();
    reading.reset(ends[0]);
    writing.reset(ends[1]);
    ::fcntl(reading.get(), F_SETFL, O_NONBLOCK);
    return {};
}

class LinuxChildProcess : public ChildProcess {
  public:
    LinuxChildProcess(DescriptorWatcher& watcher, std::string path,
                      std::vector<std::string> arguments)
        : watcher_(watcher), path_(std::move(path)), arguments_(std::move(arguments)) {}

    [[nodiscard]] std::error_code launch() override;
    void waitForDataAndNotify(Pipe pipe) override;
    [[nodiscard]] std::string availableData(Pipe pipe) override;

    [[nodiscard]] Subscription onDataAvailable(Pipe pipe, std::function<void()> handler) override {
        return reader(pipe).observers.add(std::move(handler));
    }
    [[nodiscard]] Subscription onTerminated(std::function<void()> handler) override {
        return termination_.add(std::move(handler));
    }

  private:
    Reader& reader(Pipe pipe) {
        return pipe == Pipe::standardOutput ? standardOutput_ : standardError_;
    }
    void watchData(Reader& reader);
    void notifyOfData(Reader& reader);
    void processEnded();

    DescriptorWatcher& watcher_;
    std::string path_;
    std::vector<std::string> arguments_;
    // Expires when a handler destroys this object.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    Reader standardOutput_;
    Reader standardError_;
    ObserverList<> termination_;
    pid_t process_ = -1;
    FileDescriptor processEnd_;
    Subscription endWatched_;
};

std::error_code LinuxChildProcess::launch() {
    if (process_ >= 0) return std::make_error_code(std::errc::operation_not_permitted);
    FileDescriptor output;
    FileDescriptor error;
    if (const std::error_code failure = makePipe(standardOutput_.descriptor, output)) {
        return failure;
    }
    if (const std::error_code failure = makePipe(standardError_.descriptor, error)) return failure;
    SpawnRequest request;
    request.path = path_;
    request.arguments = arguments_;
    request.standardOutput = output.get();
    request.standardError = error.get();
    const Result<pid_t> process = spawn(request);
    if (!process) return process.error();
    process_ = process.value();
    // The process id cannot be reused before the process has been waited for.
    processEnd_.reset(static_cast<int>(::syscall(SYS_pidfd_open, process_, 0)));
    if (!processEnd_) {
        const std::error_code failure = lastError();
        static_cast<void>(waitForEnd(process_));
        return failure;
    }
    endWatched_ = watcher_.watch(processEnd_.get(), [this] { processEnded(); });
    for (Reader* reader : {&standardOutput_, &standardError_}) {
        if (reader->armed) watchData(*reader);
    }
    return {};
}

void LinuxChildProcess::waitForDataAndNotify(Pipe pipe) {
    Reader& asked = reader(pipe);
    // The end is notified once: repeated notices would keep the loop busy for as long as a process
    // lives on without its output.
    if (asked.armed || asked.atEnd) return;
    asked.armed = true;
    if (process_ >= 0) watchData(asked);
}

void LinuxChildProcess::watchData(Reader& reader) {
    reader.watched =
        watcher_.watch(reader.descriptor.get(), [this, &reader] { notifyOfData(reader); });
}

void LinuxChildProcess::notifyOfData(Reader& reader) {
    if (!std::exchange(reader.armed, false)) return;
    reader.watched.cancel();
    reader.observers.call();
}

void LinuxChildProcess::processEnded() {
    const std::weak_ptr<bool> here = alive_;
    endWatched_.cancel();
    siginfo_t information{};
    while (::waitid(P_PIDFD, static_cast<id_t>(processEnd_.get()), &information, WEXITED) != 0 &&
           errno == EINTR) {
    }
    // Data first, whatever the order of the sources.
    for (Reader* reader : {&standardOutput_, &standardError_}) {
        if (reader->armed && reader->readable()) notifyOfData(*reader);
        if (here.expired()) return;
    }
    termination_.call();
}

std::string LinuxChildProcess::availableData(Pipe pipe) {
    Reader& source = reader(pipe);
    std::string data;
    std::array<char, 65536> buffer;
    // A tool that writes faster than this reads must not keep the loop from turning.
    while (source.descriptor && !source.atEnd && data.size() < mostAtOnce) {
        const ssize_t count = ::read(source.descriptor.get(), buffer.data(), buffer.size());
        if (count > 0) {
            data.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
            source.atEnd = true;
        } else if (errno == EAGAIN) {
            break;
        }
    }
    return data;
}

}  // namespace

std::unique_ptr<ChildProcess> LinuxChildProcesses::create(
    const std::string& path, const std::vector<std::string>& arguments) {
    return std::make_unique<LinuxChildProcess>(watcher_, path, arguments);
}

}  // namespace installer
