#include "linux/rights/LinkedFolders.h"

#include <array>
#include <climits>
#include <unordered_set>

#include <fcntl.h>
#include <unistd.h>

#include "foundation/values/Paths.h"
#include "privileged/files/PathWalk.h"

namespace installer {

namespace {

/// Where the folder lies; empty if nobody can tell.
std::string placeOf(const FileDescriptor& folder) {
    const std::string link = "/proc/self/fd/" + std::to_string(folder.get());
    std::array<char, PATH_MAX> place = {};
    const auto length = ::readlink(link.c_str(), place.data(), place.size());
    if (length <= 0 || static_cast<std::size_t>(length) == place.size()) return {};
    return {place.data(), static_cast<std::size_t>(length)};
}

bool isRoot(std::string_view folder) {
    return folder.empty() || folder == "/";
}

}  // namespace

/// The folders that do not exist yet are taken as they are. So are links that root follows itself.
std::string LinkedFolders::ledTo(const std::string& folder) const {
    std::string existing = folder;
    std::string rest;
    while (!isRoot(existing)) {
        if (walkPath(FileDescriptor(), existing, LinkTrust::inRootsFolders())) return folder;
        const auto opened = walkPath(FileDescriptor(), existing, LinkTrust::ofRootOr(user_));
        if (opened) {
            const std::string place = placeOf(opened.value());
            return place.empty() ? folder : place + rest;
        }
        if (opened.error() != std::errc::no_such_file_or_directory) break;
        rest.insert(0, "/" + lastPathComponent(existing));
        existing = parentPath(existing);
    }
    return folder;
}

LinkRefusal LinkedFolders::refusal(const std::string& folder,
                                   const ProtectedFolders& protectedFolders) const {
    for (std::string existing = folder; !isRoot(existing); existing = parentPath(existing)) {
        if (walkPath(FileDescriptor(), existing, LinkTrust::inRootsFolders())) break;
        const auto opened = walkPath(FileDescriptor(), existing, LinkTrust::ofRootOr(user_));
        if (opened) {
            const bool isProtected = protectedFolders.hold(placeOf(opened.value()));
            return isProtected ? LinkRefusal::intoSystem : LinkRefusal::none;
        }
        if (opened.error() == std::errc::no_such_file_or_directory) continue;
        // Too many links for everybody lead nowhere; what is missing behind a link would be made.
        constexpr auto forbidden = std::errc::too_many_symbolic_link_levels;
        const bool isOfAnother =
            opened.error() == forbidden &&
            walkPath(FileDescriptor(), existing, LinkTrust::any()).error() != forbidden;
        return isOfAnother ? LinkRefusal::ofAnotherUser : LinkRefusal::none;
    }
    return LinkRefusal::none;
}

WriteGrant LinkedFolders::follow(const WriteGrant& grant) {
    folders_.clear();
    std::unordered_set<std::string> seen;
    // Thousands of items lie in a few hundred folders.
    const auto learn = [this, &seen](const std::string& folder) {
        if (!seen.insert(folder).second) return;
        if (std::string place = ledTo(folder); place != folder) folders_[folder] = std::move(place);
    };
    for (const std::string& folder : grant.folders()) learn(folder);
    for (const std::string& path : grant.destinations()) learn(parentPath(path));
    if (folders_.empty()) return grant;

    WriteGrant led;
    for (const std::string& folder : grant.folders()) led.addFolder(followed(folder));
    for (const std::string& path : grant.destinations()) {
        const std::string place = followed(path);
        // The link may lie below the folder that was granted as a whole.
        if (place != path) led.addFolder(parentPath(place));
        led.addDestination(place);
    }
    for (const std::string& name : grant.removableNames()) led.addRemovableName(name);
    return led;
}

std::string LinkedFolders::followed(const std::string& path) const {
    std::string folder = path;
    std::string rest;
    while (!isRoot(folder)) {
        const auto found = folders_.find(folder);
        if (found != folders_.end()) return found->second + rest;
        rest.insert(0, "/" + lastPathComponent(folder));
        folder = parentPath(folder);
    }
    return path;
}

}  // namespace installer
