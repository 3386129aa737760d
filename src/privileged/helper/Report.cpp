#include "privileged/helper/Report.h"

#include <string>

#include <limits.h>
#include <poll.h>
#include <syslog.h>
#include <unistd.h>

#include "foundation/values/VisibleText.h"

namespace installer {
namespace {

/// Whether a short line can be written now: the reader of a full pipe, or of a stopped terminal,
/// may never come back.
bool standardErrorTakesALine() {
    pollfd polled{STDERR_FILENO, POLLOUT, 0};
    return ::poll(&polled, 1, 0) > 0 && (polled.revents & POLLOUT) != 0;
}

/// With the words around it, the line fits into a pipe that says that it takes something.
std::string safeLine(std::string_view line) {
    constexpr std::size_t longest = PIPE_BUF - 100;
    return visibleText(line).substr(0, longest);
}

void logLine(const std::string& text) {
    ::syslog(LOG_AUTHPRIV | LOG_NOTICE, "privileged-helper: %s", text.c_str());
}

}  // namespace

void report(std::string_view line) {
    const std::string text = safeLine(line);
    logLine(text);
    const std::string output = "privileged-helper: " + text + "\n";
    if (!standardErrorTakesALine()) return;
    static_cast<void>(!::write(STDERR_FILENO, output.data(), output.size()));
}

void note(std::string_view line) {
    logLine(safeLine(line));
}

}  // namespace installer
