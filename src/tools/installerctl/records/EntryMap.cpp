#include "tools/installerctl/records/EntryMap.h"

#include <algorithm>
#include <utility>

#include "foundation/values/Paths.h"

namespace installer {

void EntryMap::replaceTree(const std::string& top, std::span<const EntryRecord> records) {
    map_.erase(top);
    // "0" comes right after "/".
    map_.erase(map_.lower_bound(top + "/"), map_.lower_bound(top + "0"));
    if (records.empty()) return;
    const std::size_t prefix = records.front().path.size();
    for (const EntryRecord& record : records) {
        EntryRecord moved = record;
        moved.path = top + record.path.substr(prefix);
        add(std::move(moved));
    }
}

void EntryMap::add(EntryRecord record) {
    std::string path = record.path;
    map_[std::move(path)].push_back(std::move(record));
}

std::vector<const EntryMap::Alternatives*> EntryMap::tree(const std::string& top) const {
    std::vector<const Alternatives*> found;
    if (const auto* own = at(top)) found.push_back(own);
    const auto end = map_.lower_bound(top + "0");
    for (auto entry = map_.lower_bound(top + "/"); entry != end; ++entry) {
        found.push_back(&entry->second);
    }
    return found;
}

const EntryMap::Alternatives* EntryMap::at(const std::string& path) const {
    const auto entry = map_.find(path);
    return entry == map_.end() ? nullptr : &entry->second;
}

bool EntryMap::knows(const EntryRecord& record) const {
    const Alternatives* alternatives = at(record.path);
    return alternatives != nullptr &&
           std::ranges::any_of(
               *alternatives, [&](const EntryRecord& other) { return isSameEntry(other, record); });
}

bool EntryMap::covers(const std::string& path) const {
    for (std::string above = path; above.size() > 1; above = parentPath(above)) {
        if (map_.contains(above)) return true;
    }
    return false;
}

}  // namespace installer
