// How a test makes the scene, looks at it, and what the administrator does in it.

#include "foundation/values/Paths.h"
#include "tests/support/MemoryFileManager.h"

namespace installer::test {

MemoryFileManager::MemoryFileManager() {
    nodes_["/"] = {.type = FileType::folder, .permissions = 0755};
}

MemoryFileManager::Node& MemoryFileManager::add(const std::string& path, FileType type) {
    const std::string parent = parentPath(path);
    if (parent != "/" && find(parent) == nullptr) addFolder(parent);
    const auto place = located(path, LinkAtEnd::keep);
    Node& node = nodes_[place ? place.value() : withSingleSeparators(path)];
    node = Node{.type = type, .order = ++nextOrder_};
    return node;
}

void MemoryFileManager::addFile(const std::string& path, const std::string& contents,
                                std::uint32_t permissions) {
    Node& node = add(path, FileType::regular);
    node.contents = contents;
    node.permissions = permissions;
}

void MemoryFileManager::addFolder(const std::string& path, std::uint32_t permissions) {
    add(path, FileType::folder).permissions = permissions;
}

void MemoryFileManager::addLink(const std::string& path, const std::string& target) {
    Node& node = add(path, FileType::symbolicLink);
    node.contents = target;
    node.permissions = 0777;
}

void MemoryFileManager::addOther(const std::string& path) {
    add(path, FileType::other);
}

void MemoryFileManager::addHardLink(const std::string& path, const std::string& file) {
    Node* original = find(file);
    if (original == nullptr) return;
    if (original->sharedFile == 0) original->sharedFile = ++nextOrder_;
    const Node copy = *original;
    Node& name = add(path, FileType::regular);
    const std::uint64_t order = name.order;
    name = copy;
    name.order = order;
}

void MemoryFileManager::setModificationDate(const std::string& path, FileTime date) {
    if (Node* node = find(path)) node->modificationDate = date;
}

void MemoryFileManager::makeUnwritable(const std::string& folder) {
    unwritable_.insert(folder);
}

void MemoryFileManager::makeUnlistable(const std::string& folder) {
    unlistable_.insert(folder);
}

const MemoryFileManager::Node* MemoryFileManager::node(const std::string& path) const {
    const auto found = nodes_.find(withSingleSeparators(path));
    return found == nodes_.end() ? nullptr : &found->second;
}

std::vector<std::string> MemoryFileManager::paths() const {
    std::vector<std::string> all;
    for (const auto& [path, node] : nodes_) {
        if (path != "/") all.push_back(path);
    }
    return all;
}

std::string MemoryFileManager::contents(const std::string& path) const {
    const Node* file = node(path);
    return file == nullptr ? "" : file->contents;
}

std::error_code MemoryFileManager::copyAsAdministrator(const std::string& source,
                                                       const std::string& destination) {
    const auto from = existing(source, LinkAtEnd::keep);
    if (!from) return from.error();
    const auto to = located(destination, LinkAtEnd::keep);
    return to ? copyLocated(from.value(), to.value()) : to.error();
}

std::error_code MemoryFileManager::removeAsAdministrator(const std::string& path) {
    const auto place = existing(path, LinkAtEnd::keep);
    if (!place) return place.error();
    for (const std::string& entry : treeOf(place.value())) nodes_.erase(entry);
    return {};
}

void MemoryFileManager::makeFoldersAsAdministrator(const std::string& folder,
                                                   std::uint32_t permissions) {
    if (find(folder) != nullptr) return;
    makeFoldersAsAdministrator(parentPath(folder), permissions);
    Node& node = add(folder, FileType::folder);
    node.permissions = permissions;
}

void MemoryFileManager::setOwnerAsAdministrator(const std::string& path, const std::string& owner,
                                                const std::string& group) {
    const auto place = existing(path, LinkAtEnd::keep);
    if (!place) return;
    for (const std::string& entry : treeOf(place.value())) {
        nodes_.at(entry).owner = owner;
        nodes_.at(entry).group = group;
    }
}

void MemoryFileManager::setModeAsAdministrator(const std::string& path, std::uint32_t permissions) {
    const auto place = existing(path, LinkAtEnd::keep);
    if (!place) return;
    for (const std::string& entry : treeOf(place.value())) {
        Node& node = nodes_.at(entry);
        if (node.type != FileType::symbolicLink) node.permissions = permissions;
    }
}

}  // namespace installer::test
