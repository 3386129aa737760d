#include "tools/mkinstaller/trying/TreeDifference.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <vector>

#include "foundation/values/Paths.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

namespace fs = std::filesystem;

bool haveSameBytes(const std::string& here, const std::string& there) {
    std::error_code error;
    const auto size = fs::file_size(here, error);
    if (error || size != fs::file_size(there, error) || error) return false;
    std::ifstream left(here, std::ios::binary);
    std::ifstream right(there, std::ios::binary);
    return left && right &&
           std::equal(std::istreambuf_iterator<char>(left), std::istreambuf_iterator<char>(),
                      std::istreambuf_iterator<char>(right));
}

std::optional<std::string> differenceOfFolders(const std::string& here, const std::string& there) {
    const std::vector<std::string> names = sortedNames(here);
    for (const std::string& name : names) {
        auto difference = differenceOf(joinPath(here, name), joinPath(there, name));
        if (difference) return difference;
    }
    for (const std::string& name : sortedNames(there)) {
        if (!std::ranges::binary_search(names, name)) {
            return joinPath(there, name) + " is not in the payload";
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> differenceOf(const std::string& here, const std::string& there) {
    const EntryType type = entryType(here);
    if (entryType(there) == EntryType::missing) return there + " is missing";
    if (entryType(there) != type) return there + " is of another kind";
    std::error_code error;
    switch (type) {
        case EntryType::folder:
            return differenceOfFolders(here, there);
        case EntryType::file:
            if (haveSameBytes(here, there)) return std::nullopt;
            return there + " has other contents";
        case EntryType::link:
            if (fs::read_symlink(here, error) == fs::read_symlink(there, error)) return {};
            return there + " leads elsewhere";
        case EntryType::missing:
        case EntryType::other:
            break;
    }
    return std::nullopt;
}

std::set<std::string> filesBelow(const std::string& folder) {
    std::set<std::string> files;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        if (entry->symlink_status(ignored).type() == fs::file_type::directory) continue;
        files.insert(entry->path().string().substr(folder.size() + 1));
    }
    return files;
}

}  // namespace installer
