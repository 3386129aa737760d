#include "privileged/trees/TakeApart.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/files/EntryMode.h"
#include "privileged/files/FolderListing.h"
#include "privileged/system/SystemError.h"
#include "privileged/trees/TreeWalk.h"

namespace installer {

namespace {

std::error_code unlessVanished(int result) {
    if (result == 0 || errno == ENOENT) return {};
    return systemError();
}

class Remover : public TreeVisitor {
  public:
    Result<FileDescriptor> enterFolder(int parent, const std::string& name) override {
        auto folder = TreeVisitor::enterFolder(parent, name);
        if (folder.error() == std::errc::permission_denied &&
            !setEntryMode(parent, name, S_IRWXU)) {
            folder = TreeVisitor::enterFolder(parent, name);
        }
        if (folder) makeUsable(folder.value().get());
        return folder;
    }

    std::error_code visitEntry(int parent, const std::string& name, unsigned char) override {
        return unlessVanished(unlinkat(parent, name.c_str(), 0));
    }

    std::error_code leaveFolder(int parent, const std::string& name, int) override {
        return unlessVanished(unlinkat(parent, name.c_str(), AT_REMOVEDIR));
    }

  private:
    // A failure shows when the first entry cannot be removed.
    static void makeUsable(int folder) {
        struct stat status = {};
        if (fstat(folder, &status) != 0 || (status.st_mode & S_IRWXU) == S_IRWXU) return;
        if (status.st_uid == geteuid()) static_cast<void>(fchmod(folder, S_IRWXU));
    }
};

}  // namespace

std::error_code takeApart(int parent, const std::string& name) {
    Remover remover;
    const auto error = walkTree(parent, name, remover, OnFailure::goOn);
    if (error != std::errc::no_such_file_or_directory) return error;
    return entryType(parent, name) ? error : std::error_code();
}

}  // namespace installer
