#include "linux/log/LinuxSystemLog.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include "foundation/values/VisibleText.h"

namespace installer {

namespace {

/// Longer messages are cut for the daemon: common ones take no more in one datagram.
constexpr std::size_t longestMessage = 8192;

/// How long a daemon that does not read may hold the program back, once.
constexpr int patienceInMilliseconds = 500;

bool waitUntilWritable(int descriptor, int milliseconds) {
    pollfd entry{descriptor, POLLOUT, 0};
    int count = 0;
    do {
        count = ::poll(&entry, 1, milliseconds);
    } while (count < 0 && errno == EINTR);
    return count > 0 && (entry.revents & POLLOUT) != 0;
}

std::string withoutBrokenEnd(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) return std::string(text);
    while (limit > 0 && (static_cast<unsigned char>(text[limit]) & 0xC0) == 0x80) --limit;
    return std::string(text.substr(0, limit));
}

std::string messageForDaemon(const std::string& programName, std::string_view text) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    // Daemons expect the month's English name, whatever the language of the program.
    constexpr std::array months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::array<char, 32> time{};
    std::strftime(time.data(), time.size(), "%e %H:%M:%S ", &local);
    return "<" + std::to_string(LOG_USER | LOG_NOTICE) + ">" +
           months.at(static_cast<std::size_t>(local.tm_mon)) + " " + time.data() + programName +
           "[" + std::to_string(::getpid()) + "]: " + withoutBrokenEnd(text, longestMessage);
}

/// One write per line, so that lines of several processes do not run into each other.
void writeToStandardError(std::string_view line) {
    while (!line.empty()) {
        const ssize_t count = ::write(STDERR_FILENO, line.data(), line.size());
        if (count >= 0) {
            line.remove_prefix(static_cast<std::size_t>(count));
            continue;
        }
        if (errno == EINTR) continue;
        // A terminal can have been set so by another program that shares it.
        if (errno == EAGAIN && waitUntilWritable(STDERR_FILENO, -1)) continue;
        return;
    }
}

}  // namespace

LinuxSystemLog::LinuxSystemLog(std::string programName, std::string daemonSocket, Echo echo)
    : programName_(std::move(programName)), daemonSocket_(std::move(daemonSocket)), echo_(echo) {
    connectToDaemon();
}

void LinuxSystemLog::log(std::string_view line) {
    if (line.ends_with('\n')) line.remove_suffix(1);
    const std::string text = visibleText(line);
    if (echo_ == Echo::onStandardError) writeToStandardError(text + "\n");
    sendToDaemon(text);
}

void LinuxSystemLog::connectToDaemon() {
    daemon_.reset();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (daemonSocket_.size() >= sizeof address.sun_path) return;
    std::copy(daemonSocket_.begin(), daemonSocket_.end(), address.sun_path);
    FileDescriptor connection(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!connection) return;
    if (::connect(connection.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) ==
        0)
        daemon_ = std::move(connection);
}

void LinuxSystemLog::sendToDaemon(std::string_view text) {
    if (!daemon_) return;
    const std::string message = messageForDaemon(programName_, text);
    const auto send = [&] {
        return ::send(daemon_.get(), message.data(), message.size(), MSG_NOSIGNAL) >= 0;
    };
    if (send()) return;
    if (errno == ECONNREFUSED || errno == ENOTCONN) {
        // The daemon was started anew since.
        connectToDaemon();
        if (!daemon_ || send()) return;
    }
    if ((errno == EAGAIN || errno == ENOBUFS) &&
        waitUntilWritable(daemon_.get(), patienceInMilliseconds) && send())
        return;
    daemon_.reset();
}

}  // namespace installer
