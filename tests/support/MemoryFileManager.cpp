#include "tests/support/MemoryFileManager.h"

#include <algorithm>
#include <string_view>

#include "foundation/text/Text.h"
#include "foundation/values/PackageName.h"
#include "foundation/values/Paths.h"

namespace installer::test {

namespace {

std::error_code failure(std::errc error) {
    return std::make_error_code(error);
}

bool isBelow(const std::string& path, const std::string& folder) {
    return path == folder || path.starts_with(folder == "/" ? "/" : folder + "/");
}

bool namesAnEntry(const std::string& path) {
    return path.starts_with('/') && path.find('\0') == std::string::npos;
}

}  // namespace

class MemoryFileManager::OpenFile : public WritableFile {
  public:
    OpenFile(MemoryFileManager& files, std::string path) : files_(files), path_(std::move(path)) {}

    std::error_code write(std::string_view text) override {
        Node* file = files_.find(path_);
        if (file == nullptr) return failure(std::errc::io_error);
        file->contents.replace(std::min(place_, file->contents.size()), text.size(), text);
        place_ += text.size();
        return {};
    }

    std::error_code setSize(std::uint64_t size) override {
        Node* file = files_.find(path_);
        if (file == nullptr) return failure(std::errc::io_error);
        file->contents.resize(static_cast<std::size_t>(size));
        return {};
    }

  private:
    MemoryFileManager& files_;
    std::string path_;
    std::size_t place_ = 0;
};

MemoryFileManager::MemoryFileManager() {
    nodes_["/"] = {.type = FileType::folder, .permissions = 0755};
}

MemoryFileManager::Node& MemoryFileManager::add(const std::string& path, FileType type) {
    const std::string parent = parentPath(path);
    if (parent != "/" && find(parent) == nullptr) addFolder(parent);
    Node& node = nodes_[withSingleSeparators(path)];
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

void MemoryFileManager::setModificationDate(const std::string& path, FileTime date) {
    if (Node* node = find(path)) node->modificationDate = date;
}

void MemoryFileManager::makeUnwritable(const std::string& folder) {
    unwritable_.insert(folder);
}

const MemoryFileManager::Node* MemoryFileManager::node(const std::string& path) const {
    const auto found = nodes_.find(withSingleSeparators(path));
    return found == nodes_.end() ? nullptr : &found->second;
}

MemoryFileManager::Node* MemoryFileManager::find(const std::string& path) {
    if (!namesAnEntry(path)) return nullptr;
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
    std::string target = withSingleSeparators(folder);
    const Node* node = find(target);
    // Links with absolute targets, and no circles of them, are all that tests need.
    while (node != nullptr && node->type == FileType::symbolicLink) {
        target = withSingleSeparators(node->contents);
        node = find(target);
    }
    if (node == nullptr) return failure(std::errc::no_such_file_or_directory);
    if (node->type != FileType::folder) return failure(std::errc::not_a_directory);
    std::vector<std::string> names;
    for (const std::string& path : entriesOf(target)) {
        names.push_back(lastPathComponent(path));
    }
    return names;
}

void MemoryFileManager::walk(const std::string& folder, WalkDepth depth,
                             const std::function<void(const WalkEntry&)>& visit) {
    for (const std::string& path : entriesOf(withSingleSeparators(folder))) {
        const Node* node = find(path);
        if (node == nullptr || lastPathComponent(path).starts_with('.')) continue;
        const bool package = isPackage(path);
        const bool enter =
            depth == WalkDepth::everything && node->type == FileType::folder && !package;
        visit({path, node->type, package});
        if (enter) walk(path, depth, visit);
    }
}

std::vector<TreeEntry> MemoryFileManager::treeEntriesOf(const std::string& folder) {
    std::vector<TreeEntry> entries;
    for (const std::string& path : entriesOf(folder)) {
        const Node& node = nodes_.at(path);
        TreeEntry entry;
        entry.name = lastPathComponent(path);
        entry.type = node.type;
        entry.isPackage = isPackage(path);
        if (node.type == FileType::regular) entry.bytes = node.contents.size();
        entry.entries = treeEntriesOf(path);
        entries.push_back(std::move(entry));
    }
    return entries;
}

Result<std::vector<TreeEntry>> MemoryFileManager::readTree(const std::string& folder,
                                                           ProgressSink* progress) {
    const Node* node = find(folder);
    if (node == nullptr) return failure(std::errc::no_such_file_or_directory);
    if (node->type != FileType::folder) return failure(std::errc::not_a_directory);
    if (progress != nullptr) progress->bytesCopied(0);
    return treeEntriesOf(withSingleSeparators(folder));
}

bool MemoryFileManager::isPackage(const std::string& path) {
    const Node* node = find(path);
    return node != nullptr && node->type == FileType::folder &&
           isPackageName(lastPathComponent(path));
}

std::error_code MemoryFileManager::copyAsAdministrator(const std::string& source,
                                                       const std::string& destination) {
    if (find(source) == nullptr) return failure(std::errc::no_such_file_or_directory);
    if (find(destination) != nullptr) return failure(std::errc::file_exists);
    const Node* parent = find(parentPath(destination));
    if (parent == nullptr) return failure(std::errc::no_such_file_or_directory);
    if (parent->type != FileType::folder) return failure(std::errc::not_a_directory);
    const std::vector<std::string> tree = treeOf(withSingleSeparators(source));
    for (const std::string& path : tree) {
        if (nodes_.at(path).type == FileType::other) return failure(std::errc::invalid_argument);
    }
    const std::string target = withSingleSeparators(destination);
    for (const std::string& path : tree) {
        Node node = nodes_.at(path);
        node.owner = "tester";
        node.group = "tester";
        if (path == withSingleSeparators(source)) node.order = ++nextOrder_;
        nodes_[target + path.substr(withSingleSeparators(source).size())] = node;
    }
    return {};
}

std::error_code MemoryFileManager::copy(const std::string& source, const std::string& destination,
                                        ProgressSink* progress) {
    if (!mayChange(destination)) return failure(std::errc::permission_denied);
    const std::error_code error = copyAsAdministrator(source, destination);
    if (error || progress == nullptr) return error;
    for (const std::string& path : treeOf(withSingleSeparators(destination))) {
        const Node& node = nodes_.at(path);
        if (node.type == FileType::regular) progress->bytesCopied(node.contents.size());
    }
    return {};
}

std::uint64_t MemoryFileManager::bytesToCopy(const std::string& path) {
    if (find(path) == nullptr) return 0;
    std::uint64_t bytes = 0;
    for (const std::string& entry : treeOf(withSingleSeparators(path))) {
        const Node& node = nodes_.at(entry);
        if (node.type == FileType::regular) bytes += node.contents.size();
    }
    return bytes;
}

std::error_code MemoryFileManager::removeAsAdministrator(const std::string& path) {
    if (find(path) == nullptr) return failure(std::errc::no_such_file_or_directory);
    for (const std::string& entry : treeOf(withSingleSeparators(path))) nodes_.erase(entry);
    return {};
}

std::error_code MemoryFileManager::remove(const std::string& path) {
    if (find(path) == nullptr) return failure(std::errc::no_such_file_or_directory);
    if (!mayChange(path)) return failure(std::errc::permission_denied);
    return removeAsAdministrator(path);
}

void MemoryFileManager::makeFoldersAsAdministrator(const std::string& folder,
                                                   std::uint32_t permissions) {
    if (find(folder) != nullptr) return;
    makeFoldersAsAdministrator(parentPath(folder), permissions);
    Node& node = add(folder, FileType::folder);
    node.permissions = permissions;
}

std::error_code MemoryFileManager::createFolders(const std::string& folder,
                                                 std::uint32_t permissions) {
    if (!namesAnEntry(folder)) return failure(std::errc::no_such_file_or_directory);
    if (const Node* node = find(folder)) {
        return node->type == FileType::folder ? std::error_code{} : failure(std::errc::file_exists);
    }
    if (const std::error_code error = createFolders(parentPath(folder), permissions)) return error;
    if (!mayChange(folder)) return failure(std::errc::permission_denied);
    add(folder, FileType::folder).permissions = permissions;
    return {};
}

Result<FileAttributes> MemoryFileManager::attributes(const std::string& path) {
    const Node* node = find(path);
    if (node == nullptr) return failure(std::errc::no_such_file_or_directory);
    return FileAttributes{node->type, node->permissions, node->modificationDate};
}

std::error_code MemoryFileManager::setAttributes(const std::string& path,
                                                 const FileAttributeChanges& changes) {
    Node* node = find(path);
    if (node == nullptr) return failure(std::errc::no_such_file_or_directory);
    if (!mayChange(path)) return failure(std::errc::operation_not_permitted);
    if (changes.owner) node->owner = *changes.owner;
    if (changes.group) node->group = *changes.group;
    if (changes.permissions && node->type != FileType::symbolicLink) {
        node->permissions = *changes.permissions;
    }
    return {};
}

void MemoryFileManager::setOwnerAsAdministrator(const std::string& path, const std::string& owner,
                                                const std::string& group) {
    if (find(path) == nullptr) return;
    for (const std::string& entry : treeOf(withSingleSeparators(path))) {
        nodes_.at(entry).owner = owner;
        nodes_.at(entry).group = group;
    }
}

void MemoryFileManager::setModeAsAdministrator(const std::string& path, std::uint32_t permissions) {
    if (find(path) == nullptr) return;
    for (const std::string& entry : treeOf(withSingleSeparators(path))) {
        Node& node = nodes_.at(entry);
        if (node.type != FileType::symbolicLink) node.permissions = permissions;
    }
}

Result<std::string> MemoryFileManager::read(const std::string& path, std::size_t limit) {
    const Node* node = find(path);
    if (node == nullptr) return failure(std::errc::no_such_file_or_directory);
    if (node->type == FileType::folder) return failure(std::errc::is_a_directory);
    if (node->type != FileType::regular) return failure(std::errc::invalid_argument);
    return node->contents.substr(0, limit);
}

std::error_code MemoryFileManager::createFile(const std::string& path, std::string_view contents) {
    const Node* parent = find(parentPath(path));
    if (parent == nullptr) return failure(std::errc::no_such_file_or_directory);
    if (!mayChange(path)) return failure(std::errc::permission_denied);
    addFile(path, std::string(contents));
    return {};
}

Result<std::unique_ptr<WritableFile>> MemoryFileManager::openForWriting(const std::string& path) {
    const Node* node = find(path);
    if (node == nullptr) return failure(std::errc::no_such_file_or_directory);
    if (node->type == FileType::folder) return failure(std::errc::is_a_directory);
    if (node->type != FileType::regular) return failure(std::errc::invalid_argument);
    // The user may write what the administrator has made over to them, wherever it lies.
    if (!mayChange(path) && node->owner != "tester") return failure(std::errc::permission_denied);
    std::unique_ptr<WritableFile> file = std::make_unique<OpenFile>(*this, path);
    return file;
}

}  // namespace installer::test
