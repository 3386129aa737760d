#include "linux/files/FileSearch.h"

#include <algorithm>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>

#include "foundation/text/NamePattern.h"
#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "privileged/files/Location.h"

namespace installer {

namespace {

/// The memory of a list entry beside the bytes of its text.
constexpr std::size_t costOfText = 64;

std::size_t costOf(const std::string& text) {
    return text.size() + costOfText;
}

/// Opens the folder at the relative path for reading; empty if it is missing or a link is on the
/// way to it.
FileDescriptor openedBelow(int top, const std::string& path) {
    constexpr int flags = O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    FileDescriptor folder(openat(top, ".", O_PATH | flags));
    for (const std::string& name : split(path, '/')) {
        if (!folder) return folder;
        if (!name.empty()) folder.reset(openat(folder.get(), name.c_str(), O_PATH | flags));
    }
    if (folder) folder.reset(openat(folder.get(), ".", O_RDONLY | flags));
    return folder;
}

}  // namespace

FileSearch::FileSearch(std::string pattern, std::vector<std::string> scopes,
                       std::size_t memoryLimit)
    : pattern_(std::move(pattern)), scopes_(std::move(scopes)), memoryLimit_(memoryLimit) {
    std::reverse(scopes_.begin(), scopes_.end());
}

bool FileSearch::goOn(int steps, std::vector<FoundFile>& found) {
    for (int taken = 0; taken < steps; ++taken) {
        if (!step(found)) return false;
    }
    return true;
}

bool FileSearch::step(std::vector<FoundFile>& found) {
    if (open_) {
        readFolder(found);
    } else if (!folders_.empty()) {
        std::string folder = std::move(folders_.back());
        folders_.pop_back();
        letGo(costOf(folder));
        openFolder(std::move(folder));
    } else if (!scopes_.empty()) {
        const std::string scope = std::move(scopes_.back());
        scopes_.pop_back();
        openScope(scope);
    } else {
        return false;
    }
    return true;
}

void FileSearch::openScope(const std::string& path) {
    top_.reset();
    // The owner of the folder may have replaced it by a link. A search may follow it; the code that
    // changes files there applies its own link policy.
    auto top = installer::openFolder(path, LinkPolicy::follow);
    if (!top) return;
    scope_ = withSingleSeparators(path);
    top_ = std::move(top).value();
    openFolder("");
}

void FileSearch::openFolder(std::string path) {
    open_ = openedBelow(top_.get(), path);
    folder_ = std::move(path);
}

void FileSearch::readFolder(std::vector<FoundFile>& found) {
    std::vector<FolderEntry> entries;
    const auto more = listMore(open_.get(), entries);
    for (const FolderEntry& entry : entries) look(entry, found);
    if (!more || !more.value()) open_.reset();
}

void FileSearch::look(const FolderEntry& entry, std::vector<FoundFile>& found) {
    const bool isFound = isLike(entry.name, pattern_);
    if (!isFound && entry.type != DT_DIR) return;
    std::string below = joinPath(folder_, entry.name);
    std::string path = joinPath(scope_, below);
    // No system call accepts a path of that length.
    if (path.size() >= PATH_MAX) return;
    if (isFound && hold(costOf(entry.name) + costOf(path))) {
        found.push_back({entry.name, std::move(path)});
    }
    if (entry.type == DT_DIR && hold(costOf(below))) folders_.push_back(std::move(below));
}

bool FileSearch::hold(std::size_t bytes) {
    if (bytes > memoryLimit_ - held_) return false;
    held_ += bytes;
    return true;
}

}  // namespace installer
