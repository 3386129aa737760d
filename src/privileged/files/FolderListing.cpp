#include "privileged/files/FolderListing.h"

#include <array>
#include <cstddef>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "privileged/system/SystemError.h"

namespace installer {

namespace {

constexpr std::size_t listingBufferSize = 32768;

void appendEntries(std::vector<FolderEntry>& entries, const char* bytes, std::size_t count) {
    std::size_t offset = 0;
    while (offset < count) {
        const auto* entry = reinterpret_cast<const dirent64*>(bytes + offset);
        const std::string_view name(entry->d_name);
        if (name != "." && name != "..") entries.push_back({std::string(name), entry->d_type});
        offset += entry->d_reclen;
    }
}

}  // namespace

Result<std::vector<FolderEntry>> listFolder(int folder) {
    std::vector<FolderEntry> entries;
    for (;;) {
        const auto more = listMore(folder, entries);
        if (!more) return more.error();
        if (!more.value()) return entries;
    }
}

Result<bool> listMore(int folder, std::vector<FolderEntry>& entries) {
    alignas(dirent64) std::array<char, listingBufferSize> buffer;
    const auto count = getdents64(folder, buffer.data(), buffer.size());
    if (count < 0) return systemError();
    const std::size_t known = entries.size();
    appendEntries(entries, buffer.data(), static_cast<std::size_t>(count));
    for (std::size_t index = known; index < entries.size(); ++index) {
        FolderEntry& entry = entries[index];
        if (entry.type != DT_UNKNOWN) continue;
        if (const auto type = entryType(folder, entry.name)) entry.type = type.value();
    }
    return count > 0;
}

Result<unsigned char> entryType(int parent, const std::string& name) {
    struct stat status = {};
    if (fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return systemError();
    return static_cast<unsigned char>(IFTODT(status.st_mode));
}

}  // namespace installer
