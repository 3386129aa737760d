#include "privileged/trees/ExtendedAttributes.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include <sys/xattr.h>

#include "privileged/system/SystemError.h"

namespace installer {

namespace {

constexpr std::size_t usualSize = 1024;
constexpr std::string_view capabilities = "security.capability";

/// Calls `get` with buffers until its answer fits.
template <class Get>
Result<std::string> readFitting(Get get) {
    std::string buffer(usualSize, '\0');
    for (;;) {
        const ssize_t length = get(buffer.data(), buffer.size());
        if (length >= 0) {
            buffer.resize(static_cast<std::size_t>(length));
            return buffer;
        }
        if (errno != ERANGE) return systemError();
        const ssize_t needed = get(nullptr, 0);
        if (needed < 0) return systemError();
        buffer.resize(static_cast<std::size_t>(needed) + usualSize);
    }
}

bool mayBeMissing(std::string_view name, std::error_code error) {
    if (name.starts_with("user.")) return false;
    const int number = error.value();
    return number == EOPNOTSUPP || number == EPERM || number == EACCES || number == EINVAL;
}

std::error_code copyAttribute(int source, int destination, const char* name) {
    const auto value = readFitting([source, name](char* buffer, std::size_t size) {
        return fgetxattr(source, name, buffer, size);
    });
    // Taken away since the names were listed.
    if (value.error() == std::errc::no_message_available) return {};
    if (!value) return value.error();
    if (fsetxattr(destination, name, value.value().data(), value.value().size(), 0) == 0) return {};
    return systemError();
}

}  // namespace

Result<std::size_t> copyExtendedAttributes(int source, int destination, Privileges privileges) {
    std::array<char, usualSize> buffer;
    ssize_t length = flistxattr(source, buffer.data(), buffer.size());
    if (length == 0) return std::size_t{0};
    if (length < 0 && errno == EOPNOTSUPP) return std::size_t{0};
    const auto names = readFitting(
        [source](char* text, std::size_t size) { return flistxattr(source, text, size); });
    if (!names) return names.error();
    std::size_t count = 0;
    const char* end = names.value().data() + names.value().size();
    for (const char* name = names.value().data(); name < end;) {
        const std::string_view text(name);
        const bool isWanted = privileges == Privileges::keep || text != capabilities;
        const auto error = isWanted ? copyAttribute(source, destination, name) : std::error_code();
        if (error && !mayBeMissing(text, error)) return error;
        if (isWanted && !error) ++count;
        name += text.size() + 1;
    }
    return count;
}

}  // namespace installer
