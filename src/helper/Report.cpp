#include "helper/Report.h"

#include <string>

#include <syslog.h>
#include <unistd.h>

namespace installer {
namespace {

std::string withVisibleControls(std::string_view line) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char character : line) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte != 0x7f) {
            text += character;
        } else {
            text += "\\x";
            text += digits[byte >> 4U];
            text += digits[byte & 0xfU];
        }
    }
    return text;
}

}  // namespace

void report(std::string_view line) {
    const std::string text = withVisibleControls(line);
    ::syslog(LOG_AUTHPRIV | LOG_NOTICE, "privileged-helper: %s", text.c_str());
    const std::string output = "privileged-helper: " + text + "\n";
    // Nobody may be reading; the work does not depend on it.
    static_cast<void>(!::write(STDERR_FILENO, output.data(), output.size()));
}

}  // namespace installer
