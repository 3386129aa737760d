#include "tests/faults/disk/DiskScene.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include <sys/stat.h>
#include <unistd.h>

#include "foundation/text/Text.h"

namespace installer::test {

namespace fs = std::filesystem;

void makeOnDisk(const DiskTree& tree, const std::string& folder, uid_t user) {
    for (const auto& [path, entry] : tree) {
        const std::string place = folder + path;
        if (entry.type == FileType::folder) fs::create_directory(place);
        if (entry.type == FileType::regular) std::ofstream(place) << entry.contents;
        if (entry.type == FileType::symbolicLink) {
            fs::create_symlink(entry.contents, place);
        } else {
            fs::permissions(place, static_cast<fs::perms>(entry.permissions));
        }
        const bool isOfTheUser = path.starts_with(fault_scene::home);
        if (isOfTheUser && ::lchown(place.c_str(), user, user) != 0) std::abort();
    }
}

DiskTree treeOnDisk(const std::string& folder) {
    DiskTree tree;
    for (const fs::directory_entry& found : fs::recursive_directory_iterator(folder)) {
        const std::string place = found.path().string();
        DiskEntry& entry = tree[place.substr(folder.size())];
        struct stat status{};
        if (::lstat(place.c_str(), &status) != 0) std::abort();
        entry.permissions = status.st_mode & 07777U;
        entry.owner = std::to_string(status.st_uid);
        if (found.is_symlink()) {
            entry.type = FileType::symbolicLink;
            entry.contents = fs::read_symlink(found.path()).string();
        } else if (found.is_directory()) {
            entry.type = FileType::folder;
        } else if (found.is_regular_file()) {
            std::ifstream file(place);
            const std::string text{std::istreambuf_iterator<char>(file), {}};
            entry.contents = replacingAll(text, folder, "");
        } else {
            entry.type = FileType::other;
        }
    }
    return tree;
}

}  // namespace installer::test
