#include "privileged/copies/ExtendedAttributes.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include <sys/xattr.h>

#include "privileged/system/FileSystemUser.h"
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

std::error_code copyAttribute(int source, int destination, const char* name, const CopyTask& task) {
    const auto value = readFitting([source, name, &task](char* buffer, std::size_t size) {
        const ActingAs reader(task.reader);
        return fgetxattr(source, name, buffer, size);
    });
    // Taken away since the names were listed.
    if (value.error() == std::errc::no_message_available) return {};
    if (!value) return value.error();
    if (fsetxattr(destination, name, value.value().data(), value.value().size(), 0) == 0) return {};
    return systemError();
}

/// The names of a descriptor's attributes, each with a NUL behind it. Empty where the file system
/// has no attributes.
Result<std::string> attributeNames(int descriptor) {
    // Hardly any entry has one.
    std::array<char, usualSize> buffer;
    const ssize_t length = flistxattr(descriptor, buffer.data(), buffer.size());
    if (length == 0 || (length < 0 && errno == EOPNOTSUPP)) return std::string();
    if (length > 0) return std::string(buffer.data(), static_cast<std::size_t>(length));
    return readFitting(
        [descriptor](char* text, std::size_t size) { return flistxattr(descriptor, text, size); });
}

Result<std::string> attributeNamesOfSource(int source, const CopyTask& task) {
    const ActingAs reader(task.reader);
    return attributeNames(source);
}

bool holdsName(const std::string& names, std::string_view name) {
    for (std::size_t at = 0; at < names.size(); at = names.find('\0', at) + 1) {
        if (std::string_view(names.c_str() + at) == name) return true;
    }
    return false;
}

/// A folder's default list goes to every new entry in it: whoever made the folder would keep his
/// rights in what is copied there.
Result<std::size_t> removeInheritedAccessLists(const std::string& sourceNames, int destination) {
    const auto names = attributeNames(destination);
    if (!names) return names.error();
    std::size_t count = 0;
    for (const char* list : {"system.posix_acl_access", "system.posix_acl_default"}) {
        if (!holdsName(names.value(), list) || holdsName(sourceNames, list)) continue;
        if (fremovexattr(destination, list) != 0) return systemError();
        ++count;
    }
    return count;
}

}  // namespace

Result<std::size_t> copyExtendedAttributes(int source, int destination, const CopyTask& task) {
    const auto names = attributeNamesOfSource(source, task);
    if (!names) return names.error();
    const auto removed = removeInheritedAccessLists(names.value(), destination);
    if (!removed) return removed.error();
    std::size_t count = removed.value();
    const char* end = names.value().data() + names.value().size();
    for (const char* name = names.value().data(); name < end;) {
        const std::string_view text(name);
        const bool isWanted = task.privileges == Privileges::keep || text != capabilities;
        const auto error =
            isWanted ? copyAttribute(source, destination, name, task) : std::error_code();
        if (error && !mayBeMissing(text, error)) return error;
        if (isWanted && !error) ++count;
        name += text.size() + 1;
    }
    return count;
}

}  // namespace installer
