#include "tools/mkinstaller/sources/Folders.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "privileged/files/RegularFile.h"

namespace installer {

namespace fs = std::filesystem;

std::vector<std::string> sortedNames(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

EntryType entryType(const std::string& path) {
    std::error_code error;
    switch (fs::symlink_status(path, error).type()) {
        case fs::file_type::none:
        case fs::file_type::not_found:
            return EntryType::missing;
        case fs::file_type::regular:
            return EntryType::file;
        case fs::file_type::directory:
            return EntryType::folder;
        case fs::file_type::symlink:
            return EntryType::link;
        default:
            return EntryType::other;
    }
}

bool isFolder(const std::string& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

bool isFile(const std::string& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

std::optional<std::string> contentsOf(const std::string& path, std::size_t limit) {
    Result<std::string> bytes = readRegularFile(path, limit);
    if (!bytes) return std::nullopt;
    return std::move(bytes).value();
}

std::optional<std::string> startOf(const std::string& path, std::size_t size) {
    // Only of files: opening a FIFO would wait for its other end.
    if (!isFile(path)) return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    std::string bytes(size, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    if (!file && !file.eof()) return std::nullopt;
    return bytes;
}

std::string suffixOf(std::string_view name) {
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string() : std::string(name.substr(dot + 1));
}

std::string stemOf(std::string_view name) {
    return std::string(name.substr(0, name.rfind('.')));
}

std::size_t lineOf(std::string_view text, std::size_t offset) {
    const auto before = text.substr(0, std::min(offset, text.size()));
    return 1 + static_cast<std::size_t>(std::ranges::count(before, '\n'));
}

}  // namespace installer
