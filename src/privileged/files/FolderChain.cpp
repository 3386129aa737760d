#include "privileged/files/FolderChain.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "privileged/system/SystemError.h"

namespace installer {

namespace {

/// How many folders stay open above the current one.
constexpr std::size_t openAncestors = 8;

}  // namespace

void FolderChain::push(FileDescriptor folder) {
    folders_.push_back({std::move(folder)});
    const std::size_t depth = folders_.size();
    if (depth > openAncestors + 2) close(folders_[depth - openAncestors - 2]);
}

std::error_code FolderChain::openParent() {
    Folder& parent = folders_[folders_.size() - 2];
    if (parent.descriptor) return {};
    FileDescriptor opened(openat(current(), "..", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (!opened || fstat(opened.get(), &status) != 0) return systemError();
    if (status.st_dev != parent.device || status.st_ino != parent.number) {
        return systemError(ESTALE);
    }
    parent.descriptor = std::move(opened);
    return {};
}

void FolderChain::close(Folder& folder) {
    struct stat status = {};
    if (!folder.descriptor || fstat(folder.descriptor.get(), &status) != 0) return;
    folder.device = status.st_dev;
    folder.number = status.st_ino;
    folder.descriptor.reset();
}

}  // namespace installer
