#include "linux/files/FilledFolder.h"

#include <utility>

#include <fcntl.h>

#include "privileged/system/SystemError.h"
#include "privileged/trees/Temporary.h"

namespace installer {

FilledFolder::Folder FilledFolder::at(std::string_view path) {
    if (folder_ && path == path_) return folder_;
    forget();
    std::string wanted(path);
    auto folder = openFolder(wanted, policy_);
    if (!folder || fstat(folder.value().get(), &status_) != 0) return nullptr;
    clearDeadTemporaries(folder.value().get());
    path_ = std::move(wanted);
    folder_ = std::make_shared<const FileDescriptor>(std::move(folder).value());
    return folder_;
}

Result<struct stat> FilledFolder::statusOf(const std::string& path) {
    struct stat status = {};
    const std::string_view name = nameOfEntryAt(path);
    if (!name.empty() && name == std::exchange(newest_, {})) return newestStatus_;
    newest_.clear();
    if (!name.empty() && isAtItsPath_) {
        const char* entry = path.c_str() + (path.size() - name.size());
        if (fstatat(folder_->get(), entry, &status, AT_SYMLINK_NOFOLLOW) != 0) {
            return systemError();
        }
        return status;
    }
    const bool isSeen = lstat(path.c_str(), &status) == 0;
    const auto error = isSeen ? std::error_code() : systemError();
    if (folder_ && path == path_) {
        isAtItsPath_ = isSeen && status.st_dev == status_.st_dev && status.st_ino == status_.st_ino;
        // A link there may still lead to it.
        const bool isLink = isSeen && S_ISLNK(status.st_mode);
        if (!isAtItsPath_ && !isLink) forget();
    }
    if (!isSeen) return error;
    return status;
}

void FilledFolder::entryHasCome(std::string_view name, const struct stat& status) {
    isAtItsPath_ = false;
    newest_ = name;
    newestStatus_ = status;
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

/// The name of the entry in the open folder that the path stands for: the path's end. Empty if it
/// is another path.
std::string_view FilledFolder::nameOfEntryAt(std::string_view path) const {
    const auto slash = path.rfind('/');
    if (!folder_ || slash != path_.size() || !path.starts_with(path_)) return {};
    return path.substr(slash + 1);
}

}  // namespace installer
