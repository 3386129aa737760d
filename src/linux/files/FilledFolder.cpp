#include "linux/files/FilledFolder.h"

#include <utility>

#include <fcntl.h>

#include "privileged/system/SystemError.h"
#include "privileged/trees/Temporary.h"

namespace installer {

FilledFolder::Folder FilledFolder::at(const std::string& path) {
    if (folder_ && path == path_) return folder_;
    forget();
    auto folder = openFolder(path, policy_);
    if (!folder || fstat(folder.value().get(), &status_) != 0) return nullptr;
    clearDeadTemporaries(folder.value().get());
    path_ = path;
    folder_ = std::make_shared<const FileDescriptor>(std::move(folder).value());
    return folder_;
}

Result<struct stat> FilledFolder::statusOf(const std::string& path) {
    struct stat status = {};
    const bool isInside = holdsEntryOf(path);
    newest_.clear();
    if (isInside) {
        const char* name = path.c_str() + path.rfind('/') + 1;
        if (fstatat(folder_->get(), name, &status, AT_SYMLINK_NOFOLLOW) != 0) return systemError();
        return status;
    }
    const bool isSeen = lstat(path.c_str(), &status) == 0;
    const auto error = isSeen ? std::error_code() : systemError();
    if (folder_ && path == path_) {
        isAtItsPath_ = isSeen && status.st_dev == status_.st_dev && status.st_ino == status_.st_ino;
        // A link there may still lead to it.
        if (!isAtItsPath_ && !(isSeen && S_ISLNK(status.st_mode))) forget();
    }
    if (!isSeen) return error;
    return status;
}

void FilledFolder::entryHasCome(std::string_view name) {
    isAtItsPath_ = false;
    newest_ = name;
}

void FilledFolder::doubtItsPath() {
    isAtItsPath_ = false;
    newest_.clear();
}

void FilledFolder::forget() {
    doubtItsPath();
    path_.clear();
    folder_.reset();
}

/// Whether the path names an entry that is to be looked for in the open folder.
bool FilledFolder::holdsEntryOf(std::string_view path) const {
    if (!folder_ || (!isAtItsPath_ && newest_.empty())) return false;
    const auto slash = path.rfind('/');
    if (slash != path_.size() || !path.starts_with(path_)) return false;
    const std::string_view name = path.substr(slash + 1);
    return !name.empty() && (isAtItsPath_ || name == newest_);
}

}  // namespace installer
