#include "install/plan/PayloadTrees.h"

#include <algorithm>
#include <set>

#include "foundation/text/Text.h"

namespace installer {

namespace {

const TreeEntry* folderNamed(const PayloadTrees::Entries& entries, const std::string& name) {
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const TreeEntry& entry) {
        return entry.name == name && entry.type == FileType::folder;
    });
    return found == entries.end() ? nullptr : &*found;
}

std::string withSeparator(std::string folder) {
    while (folder.ends_with('/')) folder.pop_back();
    return folder + "/";
}

std::uint64_t bytesOfNewFiles(const TreeEntry& entry, std::set<std::uint64_t>& sharedFiles) {
    const bool isCounted = entry.sharedFile != 0 && !sharedFiles.insert(entry.sharedFile).second;
    std::uint64_t bytes = isCounted ? 0 : entry.bytes;
    for (const TreeEntry& inner : entry.entries) bytes += bytesOfNewFiles(inner, sharedFiles);
    return bytes;
}

}  // namespace

const PayloadTrees::Entries* PayloadTrees::entriesOf(const std::string& folder) {
    auto tree = trees_.find(folder);
    if (tree == trees_.end()) {
        tree = trees_.emplace(folder, files_.readTree(folder, progress_)).first;
    }
    return tree->second ? &tree->second.value() : nullptr;
}

const PayloadTrees::Entries* PayloadTrees::entriesBelow(const std::string& top,
                                                        const std::string& path) {
    const Entries* entries = entriesOf(top);
    if (entries == nullptr) return entriesOf(path);
    for (const std::string& name : split(path.substr(top.size() + 1), '/')) {
        const TreeEntry* folder = folderNamed(*entries, name);
        if (folder == nullptr) return entriesOf(path);
        if (folder->isUnreadable) return nullptr;
        entries = &folder->entries;
    }
    return entries;
}

void visitVisible(const std::vector<TreeEntry>& entries, const std::string& folder,
                  const std::function<void(const std::string& path, const TreeEntry&)>& visit) {
    const std::string beginning = withSeparator(folder);
    for (const TreeEntry& entry : entries) {
        if (isHidden(entry)) continue;
        const std::string path = beginning + entry.name;
        visit(path, entry);
        if (!entry.isPackage) visitVisible(entry.entries, path, visit);
    }
}

bool isHidden(const TreeEntry& entry) {
    return entry.name.starts_with('.');
}

std::uint64_t bytesOf(const TreeEntry& entry) {
    std::set<std::uint64_t> sharedFiles;
    return bytesOfNewFiles(entry, sharedFiles);
}

}  // namespace installer
