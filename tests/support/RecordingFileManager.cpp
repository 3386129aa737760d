#include "tests/support/RecordingFileManager.h"

#include "foundation/values/Paths.h"

namespace installer::test {

namespace {

std::string octal(std::uint32_t permissions) {
    std::string digits;
    for (int shift = 9; shift >= 0; shift -= 3) {
        digits.push_back(static_cast<char>('0' + ((permissions >> shift) & 7U)));
    }
    return digits;
}

std::string described(const FileAttributeChanges& changes) {
    std::string text = changes.owner.value_or("-") + ":" + changes.group.value_or("-");
    return text + " " + (changes.permissions ? octal(*changes.permissions) : "-");
}

}  // namespace

std::error_code RecordingFileManager::faultOf(const Operation& operation) const {
    return fault_ ? fault_(operation) : std::error_code{};
}

Result<std::vector<std::string>> RecordingFileManager::list(const std::string& folder) {
    looks.push_back("list " + folder);
    if (const auto error = faultOf({"list", folder})) return error;
    return files_.list(folder);
}

void RecordingFileManager::walk(const std::string& folder, WalkDepth depth,
                                const std::function<void(const WalkEntry&)>& visit) {
    looks.push_back("walk " + folder);
    if (faultOf({"walk", folder})) return;
    files_.walk(folder, depth, visit);
}

Result<std::vector<TreeEntry>> RecordingFileManager::readTree(const std::string& folder,
                                                              ProgressSink* progress) {
    looks.push_back("readTree " + folder);
    if (const auto error = faultOf({"readTree", folder})) return error;
    auto tree = files_.readTree(folder, progress);
    if (tree) markUnreadable(folder, tree.value());
    return tree;
}

void RecordingFileManager::markUnreadable(const std::string& folder,
                                          std::vector<TreeEntry>& entries) {
    for (TreeEntry& entry : entries) {
        if (entry.type != FileType::folder) continue;
        const std::string path = joinPath(folder, entry.name);
        if (faultOf({"readTree", path})) {
            entry.isUnreadable = true;
            entry.entries.clear();
        } else {
            markUnreadable(path, entry.entries);
        }
    }
}

std::error_code RecordingFileManager::copy(const std::string& source,
                                           const std::string& destination, ProgressSink* progress) {
    record("copy " + source + " " + destination);
    if (const auto error = faultOf({"copy", source, destination})) return error;
    return files_.copy(source, destination, progress);
}

std::uint64_t RecordingFileManager::bytesToCopy(const std::string& path) {
    ++measured;
    return files_.bytesToCopy(path);
}

std::error_code RecordingFileManager::remove(const std::string& path) {
    record("remove " + path);
    if (const auto error = faultOf({"remove", path})) return error;
    return files_.remove(path);
}

std::error_code RecordingFileManager::createFolders(const std::string& folder,
                                                    std::uint32_t permissions) {
    record("createFolders " + folder + " " + octal(permissions));
    if (const auto error = faultOf({"createFolders", folder})) return error;
    return files_.createFolders(folder, permissions);
}

Result<FileAttributes> RecordingFileManager::attributes(const std::string& path) {
    if (const auto error = faultOf({"attributes", path})) return error;
    return files_.attributes(path);
}

std::error_code RecordingFileManager::setAttributes(const std::string& path,
                                                    const FileAttributeChanges& changes) {
    record("setAttributes " + path + " " + described(changes));
    if (const auto error = faultOf({"setAttributes", path})) return error;
    return files_.setAttributes(path, changes);
}

Result<std::string> RecordingFileManager::read(const std::string& path, std::size_t limit) {
    if (const auto error = faultOf({"read", path})) return error;
    return files_.read(path, limit);
}

std::error_code RecordingFileManager::createFile(const std::string& path,
                                                 std::string_view contents) {
    record("createFile " + path);
    if (const auto error = faultOf({"createFile", path})) return error;
    return files_.createFile(path, contents);
}

Result<std::unique_ptr<WritableFile>> RecordingFileManager::openForWriting(
    const std::string& path) {
    record("openForWriting " + path);
    if (const auto error = faultOf({"openForWriting", path})) return error;
    return files_.openForWriting(path);
}

}  // namespace installer::test
