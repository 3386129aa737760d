#include "privileged/system/WriteAll.h"

#include <cerrno>

#include <unistd.h>

#include "privileged/system/SystemError.h"

namespace installer {

std::error_code writeAll(int file, std::string_view text) {
    while (!text.empty()) {
        const auto count = write(file, text.data(), text.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return systemError();
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

}  // namespace installer
