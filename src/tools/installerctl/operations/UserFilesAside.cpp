#include "tools/installerctl/operations/UserFilesAside.h"

#include <fcntl.h>
#include <unistd.h>

#include "foundation/values/Paths.h"
#include "privileged/files/ExclusiveRename.h"
#include "privileged/files/FolderCreation.h"
#include "privileged/files/Location.h"
#include "tools/installerctl/records/Sha256.h"
#include "tools/installerctl/records/TreeRecords.h"

namespace installer {

namespace {

constexpr LinkPolicy links = LinkPolicy::trustedOnly;
constexpr mode_t asideMode = 0700;

/// Where the item's entries wait.
std::string asideOf(const std::string& item) {
    Sha256 hash;
    hash.add(item);
    return joinPath(parentPath(item), ".kept-" + hash.finish().substr(0, 16));
}

std::error_code moved(const std::string& from, const std::string& to) {
    const auto source = locate(from, links);
    if (!source) return source.error();
    const auto target = locate(to, links);
    if (!target) return target.error();
    return renameWithoutReplacing(source.value().parent.get(), source.value().name,
                                  target.value().parent.get(), target.value().name);
}

/// Names in the waiting folder are the places below the item, with "/" written as "%2F".
std::string nameBelow(const std::string& item, const std::string& entry) {
    std::string name;
    for (const char character : entry.substr(item.size() + 1)) {
        if (character == '/') {
            name += "%2F";
        } else if (character == '%') {
            name += "%25";
        } else {
            name += character;
        }
    }
    return name;
}

std::string placeBelow(const std::string& name) {
    std::string place;
    for (std::size_t index = 0; index < name.size(); ++index) {
        const std::string code = name.substr(index, 3);
        if (code == "%2F" || code == "%25") {
            place += code == "%2F" ? '/' : '%';
            index += 2;
        } else {
            place += name[index];
        }
    }
    return place;
}

}  // namespace

std::string UserFilesAside::setAside(const std::string& item, const std::string& entry) {
    const std::string folder = asideOf(item);
    auto error = makeFolders(folder, asideMode, links);
    if (!error) error = moved(entry, joinPath(folder, nameBelow(item, entry)));
    return error ? error.message() : std::string();
}

bool UserFilesAside::waits(const std::string& item) const {
    return static_cast<bool>(recordEntry(asideOf(item), links));
}

std::vector<PathNote> UserFilesAside::bringBack(const std::string& item) {
    std::vector<PathNote> stuck;
    const std::string folder = asideOf(item);
    const auto waiting = recordTree(folder, links);
    if (!waiting) return stuck;
    for (const EntryRecord& record : waiting.value()) {
        if (parentPath(record.path) != folder) continue;
        const std::string place = joinPath(item, placeBelow(lastPathComponent(record.path)));
        // The folder that it was in may be none of the new version's.
        static_cast<void>(makeFolders(parentPath(place), 0775, links));
        if (const auto error = moved(record.path, place)) {
            stuck.push_back({place, "waits at " + record.path + ": " + error.message()});
        }
    }
    const auto location = locate(folder, links);
    if (location && stuck.empty()) {
        ::unlinkat(location.value().parent.get(), location.value().name.c_str(), AT_REMOVEDIR);
    }
    return stuck;
}

}  // namespace installer
