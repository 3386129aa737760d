#include "foundation/values/WriteGrant.h"

#include <algorithm>

#include "foundation/values/Paths.h"

namespace installer {

namespace {

bool isBelow(std::string_view path, std::string_view folder) {
    if (folder == "/") return path.size() > 1 && path.starts_with('/');
    return path.size() > folder.size() + 1 && path.starts_with(folder) &&
           path[folder.size()] == '/';
}

}  // namespace

void WriteGrant::addFolder(std::string_view folder) {
    if (!folder.starts_with('/')) return;
    const std::string path = withSingleSeparators(folder);
    const auto holdsIt = [&path](const std::string& other) {
        return path == other || isBelow(path, other);
    };
    if (std::ranges::any_of(folders_, holdsIt)) return;
    std::erase_if(folders_, [&path](const std::string& other) { return isBelow(other, path); });
    folders_.push_back(path);
}

void WriteGrant::addDestination(std::string_view path) {
    std::string destination = withSingleSeparators(path);
    if (!isBelowFolders(destination)) return;
    if (!destinations_) {
        destinations_ = std::make_shared<Texts>();
    } else if (destinations_.use_count() > 1) {
        destinations_ = std::make_shared<Texts>(*destinations_);
    }
    destinations_->insert(std::move(destination));
}

void WriteGrant::addRemovableName(std::string_view name) {
    if (!name.empty()) removableNames_.emplace(name);
}

const WriteGrant::Texts& WriteGrant::destinations() const {
    static const Texts none;
    return destinations_ ? *destinations_ : none;
}

bool WriteGrant::holds(std::string_view path) const {
    while (path.size() > 1 && path.starts_with('/')) {
        if (destinations().contains(path)) return true;
        path = path.substr(0, path.rfind('/'));
    }
    return false;
}

bool WriteGrant::leadsThrough(std::string_view path) const {
    const std::string beginning = std::string(path) + '/';
    const auto next = destinations().lower_bound(beginning);
    return next != destinations().end() && next->starts_with(beginning);
}

bool WriteGrant::mayRemove(std::string_view path) const {
    if (holds(path)) return true;
    return isBelowFolders(path) && removableNames_.contains(path.substr(path.rfind('/') + 1));
}

bool operator==(const WriteGrant& one, const WriteGrant& other) {
    const bool sharesDestinations = one.destinations_ == other.destinations_;
    return one.folders_ == other.folders_ && one.removableNames_ == other.removableNames_ &&
           (sharesDestinations || one.destinations() == other.destinations());
}

bool WriteGrant::isBelowFolders(std::string_view path) const {
    return std::ranges::any_of(folders_,
                               [path](const std::string& folder) { return isBelow(path, folder); });
}

}  // namespace installer
