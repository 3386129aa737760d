#include "tests/support/MemoryFileManager.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <string_view>
#include <utility>

#include "foundation/text/Text.h"
#include "foundation/values/PackageName.h"
#include "foundation/values/Paths.h"

namespace installer::test {

namespace {

// As many as the kernel follows in one path.
constexpr int mostLinks = 40;

std::error_code failure(std::errc error) {
    return std::make_error_code(error);
}

bool isBelow(const std::string& path, const std::string& folder) {
    return path == folder || path.starts_with(folder == "/" ? "/" : folder + "/");
}

bool namesAnEntry(const std::string& path) {
    return path.starts_with('/') && path.find('\0') == std::string::npos;
}

/// The last component first, so that the next one to follow is at the end.
void pushComponents(const std::string& path, std::vector<std::string>& rest) {
    const std::vector<std::string> names = split(path, '/');
    rest.insert(rest.end(), names.rbegin(), names.rend());
}

std::error_code unlessRegular(const MemoryFileManager::Node& node) {
    if (node.type == FileType::folder) return failure(std::errc::is_a_directory);
    if (node.type != FileType::regular) return failure(std::errc::invalid_argument);
    return {};
}

}  // namespace

class MemoryFileManager::OpenFile : public WritableFile {
  public:
    OpenFile(MemoryFileManager& files, std::string path) : files_(files), path_(std::move(path)) {}

    std::error_code write(std::string_view text) override {
        const auto names = files_.namesOf(path_);
        if (names.empty()) return failure(std::errc::io_error);
        for (Node* file : names) {
            if (file->contents.size() < place_ && !text.empty()) file->contents.resize(place_);
            file->contents.replace(std::min(place_, file->contents.size()), text.size(), text);
        }
        place_ += text.size();
        return {};
    }

    std::error_code setSize(std::uint64_t size) override {
        const auto names = files_.namesOf(path_);
        if (names.empty()) return failure(std::errc::io_error);
        if (size > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
            return failure(std::errc::file_too_large);
        }
        for (Node* file : names) file->contents.resize(static_cast<std::size_t>(size));
        return {};
    }

  private:
    MemoryFileManager& files_;
    std::string path_;
    std::size_t place_ = 0;
};

Result<std::string> MemoryFileManager::located(const std::string& path, LinkAtEnd atEnd) const {
    if (!namesAnEntry(path)) return failure(std::errc::no_such_file_or_directory);
    std::vector<std::string> rest;
    pushComponents(path, rest);
    std::string at = "/";
    int links = 0;
    while (!rest.empty()) {
        const std::string name = std::move(rest.back());
        rest.pop_back();
        if (name.empty() || name == ".") continue;
        const auto folder = nodes_.find(at);
        if (folder == nodes_.end()) return failure(std::errc::no_such_file_or_directory);
        if (folder->second.type != FileType::folder) return failure(std::errc::not_a_directory);
        const std::string next = name == ".." ? parentPath(at) : joinPath(at, name);
        const auto node = nodes_.find(next);
        const bool isEnd = std::all_of(rest.begin(), rest.end(),
                                       [](const std::string& more) { return more.empty(); });
        const bool isLink = node != nodes_.end() && node->second.type == FileType::symbolicLink;
        if (!isLink || (isEnd && atEnd == LinkAtEnd::keep)) {
            at = next;
            continue;
        }
        if (++links > mostLinks) return failure(std::errc::too_many_symbolic_link_levels);
        pushComponents(node->second.contents, rest);
        if (node->second.contents.starts_with('/')) at = "/";
    }
    return at;
}

Result<std::string> MemoryFileManager::existing(const std::string& path, LinkAtEnd atEnd) const {
    auto place = located(path, atEnd);
    if (place && !nodes_.contains(place.value())) {
        return failure(std::errc::no_such_file_or_directory);
    }
    return place;
}

Result<std::string> MemoryFileManager::listable(const std::string& folder) const {
    auto place = existing(folder, LinkAtEnd::follow);
    if (!place) return place;
    if (nodes_.at(place.value()).type != FileType::folder) {
        return failure(std::errc::not_a_directory);
    }
    if (unlistable_.contains(place.value())) return failure(std::errc::permission_denied);
    return place;
}

MemoryFileManager::Node* MemoryFileManager::find(const std::string& path) {
    const auto place = existing(path, LinkAtEnd::keep);
    return place ? &nodes_.at(place.value()) : nullptr;
}

std::vector<MemoryFileManager::Node*> MemoryFileManager::namesOf(const std::string& path) {
    Node* entry = find(path);
    if (entry == nullptr) return {};
    if (entry->sharedFile == 0) return {entry};
    std::vector<Node*> names;
    for (auto& [name, node] : nodes_) {
        if (node.sharedFile == entry->sharedFile) names.push_back(&node);
    }
    return names;
}

std::uint64_t MemoryFileManager::sharedFile(const Node& node) const {
    const auto names = std::count_if(nodes_.begin(), nodes_.end(), [&](const auto& other) {
        return other.second.sharedFile == node.sharedFile;
    });
    return names > 1 ? node.sharedFile : 0;
}

std::vector<std::uint64_t> MemoryFileManager::sizesOfFiles(
    const std::vector<std::string>& paths) const {
    std::vector<std::uint64_t> sizes;
    std::set<std::uint64_t> counted;
    for (const std::string& path : paths) {
        const Node& node = nodes_.at(path);
        if (node.type != FileType::regular) continue;
        if (node.sharedFile != 0 && !counted.insert(node.sharedFile).second) continue;
        sizes.push_back(node.contents.size());
    }
    return sizes;
}

bool MemoryFileManager::mayChange(const std::string& path) const {
    const std::string parent = parentPath(path);
    return std::none_of(unwritable_.begin(), unwritable_.end(),
                        [&](const std::string& folder) { return isBelow(parent, folder); });
}

std::vector<std::string> MemoryFileManager::entriesOf(const std::string& folder) const {
    const std::string prefix = folder == "/" ? folder : folder + "/";
    std::vector<std::string> entries;
    for (auto node = nodes_.lower_bound(prefix);
         node != nodes_.end() && node->first.starts_with(prefix); ++node) {
        const std::string_view name = std::string_view(node->first).substr(prefix.size());
        if (!name.empty() && name.find('/') == std::string_view::npos) {
            entries.push_back(node->first);
        }
    }
    std::sort(entries.begin(), entries.end(),
              [&](const std::string& left, const std::string& right) {
                  return nodes_.at(left).order < nodes_.at(right).order;
              });
    return entries;
}

std::vector<std::string> MemoryFileManager::treeOf(const std::string& path) const {
    std::vector<std::string> tree;
    for (auto node = nodes_.lower_bound(path);
         node != nodes_.end() && node->first.starts_with(path); ++node) {
        if (isBelow(node->first, path)) tree.push_back(node->first);
    }
    return tree;
}

bool MemoryFileManager::exists(const std::string& path) {
    return find(path) != nullptr;
}

Result<std::vector<std::string>> MemoryFileManager::list(const std::string& folder) {
    const auto place = listable(folder);
    if (!place) return place.error();
    std::vector<std::string> names;
    for (const std::string& path : entriesOf(place.value())) {
        names.push_back(lastPathComponent(path));
    }
    return names;
}

void MemoryFileManager::walk(const std::string& folder, WalkDepth depth,
                             const std::function<void(const WalkEntry&)>& visit) {
    const auto place = listable(folder);
    if (place) walkLocated(place.value(), withSingleSeparators(folder), depth, visit);
}

void MemoryFileManager::walkLocated(const std::string& folder, const std::string& shown,
                                    WalkDepth depth,
                                    const std::function<void(const WalkEntry&)>& visit) {
    std::vector<WalkEntry> entries;
    for (const std::string& path : entriesOf(folder)) {
        const std::string name = lastPathComponent(path);
        if (name.starts_with('.')) continue;
        entries.push_back({joinPath(shown, name), nodes_.at(path).type, isPackage(path)});
    }
    for (const WalkEntry& entry : entries) {
        visit(entry);
        const bool enter = entry.type == FileType::folder && !entry.isPackage;
        const std::string path = joinPath(folder, lastPathComponent(entry.path));
        if (depth == WalkDepth::everything && enter && listable(path)) {
            walkLocated(path, entry.path, depth, visit);
        }
    }
}

std::vector<TreeEntry> MemoryFileManager::treeEntriesOf(const std::string& folder) const {
    std::vector<TreeEntry> entries;
    for (const std::string& path : entriesOf(folder)) {
        const Node& node = nodes_.at(path);
        TreeEntry entry;
        entry.name = lastPathComponent(path);
        entry.type = node.type;
        entry.isPackage = node.type == FileType::folder && isPackageName(entry.name);
        if (node.type == FileType::regular) entry.bytes = node.contents.size();
        if (node.sharedFile != 0) entry.sharedFile = sharedFile(node);
        entry.isUnreadable = unlistable_.contains(path);
        if (!entry.isUnreadable) entry.entries = treeEntriesOf(path);
        entries.push_back(std::move(entry));
    }
    return entries;
}

Result<std::vector<TreeEntry>> MemoryFileManager::readTree(const std::string& folder,
                                                           ProgressSink* progress) {
    const auto place = listable(folder);
    if (!place) return place.error();
    if (progress != nullptr) progress->bytesCopied(0);
    return treeEntriesOf(place.value());
}

bool MemoryFileManager::isPackage(const std::string& path) {
    const Node* node = find(path);
    return node != nullptr && node->type == FileType::folder &&
           isPackageName(lastPathComponent(path));
}

std::error_code MemoryFileManager::copyLocated(const std::string& source,
                                               const std::string& destination) {
    if (nodes_.contains(destination)) return failure(std::errc::file_exists);
    const std::vector<std::string> tree = treeOf(source);
    for (const std::string& path : tree) {
        if (nodes_.at(path).type == FileType::other) return failure(std::errc::invalid_argument);
        if (unlistable_.contains(path)) return failure(std::errc::permission_denied);
    }
    std::map<std::uint64_t, std::uint64_t> copies;  // of the files with several names
    for (const std::string& path : tree) {
        Node node = nodes_.at(path);
        node.owner = "tester";
        node.group = "tester";
        if (node.sharedFile != 0) {
            node.sharedFile = copies.emplace(node.sharedFile, ++nextOrder_).first->second;
        }
        if (path == source) node.order = ++nextOrder_;
        nodes_[destination + path.substr(source.size())] = node;
    }
    return {};
}

std::error_code MemoryFileManager::copy(const std::string& source, const std::string& destination,
                                        ProgressSink* progress) {
    const auto from = existing(source, LinkAtEnd::keep);
    if (!from) return from.error();
    const auto to = located(destination, LinkAtEnd::keep);
    if (!to) return to.error();
    if (!nodes_.contains(to.value()) && !mayChange(to.value())) {
        return failure(std::errc::permission_denied);
    }
    const std::error_code error = copyLocated(from.value(), to.value());
    if (error || progress == nullptr) return error;
    for (const auto size : sizesOfFiles(treeOf(to.value()))) progress->bytesCopied(size);
    return {};
}

void MemoryFileManager::expectCopies(CopySchedule schedule) {
    expectsCopies = schedule.next != nullptr;
    if (!expectsCopies) return;
    expectedCopies.clear();
    while (auto copy = schedule.next()) expectedCopies.push_back(std::move(*copy));
    expectedAttributes = std::move(schedule.attributes);
}

std::uint64_t MemoryFileManager::bytesToCopy(const std::string& path) {
    const auto place = existing(path, LinkAtEnd::keep);
    if (!place) return 0;
    std::vector<std::string> tree = treeOf(place.value());
    std::erase_if(tree, [this](const std::string& entry) {
        return std::any_of(unlistable_.begin(), unlistable_.end(),
                           [&](const std::string& folder) { return isBelow(entry, folder); });
    });
    const std::vector<std::uint64_t> sizes = sizesOfFiles(tree);
    return std::accumulate(sizes.begin(), sizes.end(), std::uint64_t{0});
}

std::optional<std::uint64_t> MemoryFileManager::freeBytes(const std::string& path) {
    if (!path.starts_with('/') || path.find('\0') != std::string::npos) return std::nullopt;
    std::optional<std::uint64_t> least;
    for (const auto& [folder, bytes] : freeBytesBelow) {
        const bool holdsPath = folder == "/" || path == folder || isBelow(path, folder);
        if (holdsPath && (!least || bytes < *least)) least = bytes;
    }
    return least;
}

std::error_code MemoryFileManager::remove(const std::string& path) {
    const auto place = existing(path, LinkAtEnd::keep);
    if (!place) return place.error();
    if (!mayChange(place.value())) return failure(std::errc::permission_denied);
    return removeAsAdministrator(path);
}

std::error_code MemoryFileManager::createFolders(const std::string& folder,
                                                 std::uint32_t permissions) {
    if (!namesAnEntry(folder)) return failure(std::errc::no_such_file_or_directory);
    if (find(folder) != nullptr) {
        const auto followed = existing(folder, LinkAtEnd::follow);
        const bool isFolder = followed && nodes_.at(followed.value()).type == FileType::folder;
        return isFolder ? std::error_code{} : failure(std::errc::file_exists);
    }
    if (const std::error_code error = createFolders(parentPath(folder), permissions)) return error;
    const auto place = located(folder, LinkAtEnd::keep);
    if (!place) return place.error();
    if (!mayChange(place.value())) return failure(std::errc::permission_denied);
    add(place.value(), FileType::folder).permissions = permissions;
    return {};
}

Result<FileAttributes> MemoryFileManager::attributes(const std::string& path) {
    const auto place = existing(path, LinkAtEnd::keep);
    if (!place) return place.error();
    const Node& node = nodes_.at(place.value());
    return FileAttributes{node.type, node.permissions, node.modificationDate};
}

std::error_code MemoryFileManager::setAttributes(const std::string& path,
                                                 const FileAttributeChanges& changes) {
    const auto place = existing(path, LinkAtEnd::keep);
    if (!place) return place.error();
    if (changes.owner && !users.contains(*changes.owner)) {
        return failure(std::errc::invalid_argument);
    }
    if (changes.group && !groups.contains(*changes.group)) {
        return failure(std::errc::invalid_argument);
    }
    const bool givesAway = changes.owner && *changes.owner != "tester";
    if (givesAway || !mayChange(place.value())) return failure(std::errc::operation_not_permitted);
    for (Node* node : namesOf(place.value())) {
        if (changes.owner) node->owner = *changes.owner;
        if (changes.group) node->group = *changes.group;
        if (changes.permissions && node->type != FileType::symbolicLink) {
            node->permissions = *changes.permissions;
        }
    }
    return {};
}

Result<std::string> MemoryFileManager::read(const std::string& path, std::size_t limit) {
    const auto place = existing(path, LinkAtEnd::follow);
    if (!place) return place.error();
    const Node& node = nodes_.at(place.value());
    if (const std::error_code error = unlessRegular(node)) return error;
    return node.contents.substr(0, limit);
}

std::error_code MemoryFileManager::createFile(const std::string& path, std::string_view contents) {
    const auto place = located(path, LinkAtEnd::keep);
    if (!place) return place.error();
    if (!mayChange(place.value())) return failure(std::errc::permission_denied);
    const Node* old = node(place.value());
    if (old != nullptr && old->type == FileType::folder) {
        return failure(std::errc::is_a_directory);
    }
    addFile(place.value(), std::string(contents));
    return {};
}

Result<std::unique_ptr<WritableFile>> MemoryFileManager::openForWriting(const std::string& path) {
    const auto place = existing(path, LinkAtEnd::keep);
    if (!place) return place.error();
    const Node& node = nodes_.at(place.value());
    if (node.type == FileType::symbolicLink) {
        return failure(std::errc::too_many_symbolic_link_levels);
    }
    if (const std::error_code error = unlessRegular(node)) return error;
    // The user may write what the administrator has made over to them, wherever it lies.
    if (!mayChange(place.value()) && node.owner != "tester") {
        return failure(std::errc::permission_denied);
    }
    std::unique_ptr<WritableFile> file = std::make_unique<OpenFile>(*this, place.value());
    return file;
}

}  // namespace installer::test
