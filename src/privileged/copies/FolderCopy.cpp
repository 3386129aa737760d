#include "privileged/copies/FolderCopy.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/copies/EntryCopy.h"
#include "privileged/copies/PieceGroup.h"
#include "privileged/files/FolderChain.h"
#include "privileged/files/RegularFile.h"
#include "privileged/system/FileSystemUser.h"
#include "privileged/system/SystemError.h"
#include "privileged/trees/TreeWalk.h"

namespace installer {

namespace {

class FolderCopier : public TreeVisitor {
  public:
    FolderCopier(int destination, CopyTask& task) : top_(destination), task_(task) {
        if (task.workers != nullptr) group_.emplace(*task.workers);
    }

    std::error_code start() {
        if (fstat(top_, &topStatus_) != 0) return systemError();
        return {};
    }

    /// The walk reads; the visits read and write.
    std::error_code walk(int sourceParent, const std::string& name) {
        const ActingAs reader(task_.reader);
        return walkTree(sourceParent, name, *this, OnFailure::stop);
    }

    /// Waits for what others fill, and gives the first failure of all.
    std::error_code finish(std::error_code error) {
        if (!group_) return error;
        const std::error_code failure = group_->finish(whileWaiting_);
        tellOfFilled();
        return failure ? failure : error;
    }

    Result<FileDescriptor> enterFolder(int parent, const std::string& name) override {
        auto source = TreeVisitor::enterFolder(parent, name);
        if (!source) return source;
        struct stat status = {};
        if (fstat(source.value().get(), &status) != 0) return systemError();
        const ActingAs writer(FileSystemUser::rootWhile(task_.reader));
        // The copy meets itself: its destination lies in its source.
        if (status.st_dev == topStatus_.st_dev && status.st_ino == topStatus_.st_ino) {
            return systemError(EINVAL);
        }
        if (const auto error = folders_.empty() ? pushTop() : pushNew(name)) return error;
        folders_.push_back({name, status});
        return source;
    }

    std::error_code visitEntry(int parent, const std::string& name, unsigned char type) override {
        tellOfFilled();
        if (group_ && group_->hasFailed()) return systemError(ECANCELED);
        if (type == DT_LNK) return copyLink(parent, name);
        if (type == DT_REG && task_.fileBegins) task_.fileBegins(name);
        return type == DT_REG ? copyFile(parent, name) : systemError(EINVAL);
    }

    std::error_code leaveFolder(int, const std::string&, int source) override {
        const ActingAs writer(FileSystemUser::rootWhile(task_.reader));
        // Before the mode is set: the way up leads through the folder.
        if (chain_.depth() > 1) {
            if (const auto error = chain_.openParent()) return error;
        }
        const auto error = finishFolder(source, folders_.back().status, chain_.current(), task_);
        folders_.pop_back();
        chain_.pop();
        return error;
    }

  private:
    struct Folder {
        std::string name;
        struct stat status;
    };
    using FileIdentity = std::pair<dev_t, ino_t>;

    std::error_code pushTop() {
        FileDescriptor copy(fcntl(top_, F_DUPFD_CLOEXEC, 0));
        if (!copy) return systemError();
        chain_.push(std::move(copy));
        return {};
    }

    std::error_code pushNew(const std::string& name) {
        if (mkdirat(chain_.current(), name.c_str(), S_IRWXU) != 0) return systemError();
        auto folder = TreeVisitor::enterFolder(chain_.current(), name);
        if (!folder) return folder.error();
        chain_.push(std::move(folder).value());
        return {};
    }

    std::error_code copyLink(int parent, const std::string& name) {
        struct stat status = {};
        if (fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return systemError();
        const ActingAs writer(FileSystemUser::rootWhile(task_.reader));
        if (const auto* first = firstCopy(status)) return linkTo(*first, name);
        const auto error = makeLinkLike(parent, name, status, chain_.current(), name, task_);
        if (!error) remember(status, name);
        return error;
    }

    std::error_code copyFile(int parent, const std::string& name) {
        auto source = openRegularFile(parent, name, O_RDONLY | O_NOFOLLOW);
        if (!source) return source.error();
        const ActingAs writer(FileSystemUser::rootWhile(task_.reader));
        const struct stat& status = source.value().status;
        if (const auto* first = firstCopy(status)) return linkTo(*first, name);
        FileDescriptor file(openat(chain_.current(), name.c_str(),
                                   O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                   S_IRUSR | S_IWUSR));
        if (!file) return systemError();
        remember(status, name);
        if (!group_) {
            return fillFile(source.value().descriptor.get(), status, file.get(), unknownMode, task_,
                            task_.progress);
        }
        // Not by value: a piece of work must be one that can be copied.
        const auto pair = std::make_shared<std::pair<RegularFile, FileDescriptor>>(
            std::move(source).value(), std::move(file));
        group_->add(
            [this, pair] {
                return fillFile(pair->first.descriptor.get(), pair->first.status,
                                pair->second.get(), unknownMode, task_,
                                [this](std::uint64_t bytes) { filled_ += bytes; });
            },
            whileWaiting_);
        return {};
    }

    /// Progress is told by this thread alone.
    void tellOfFilled() {
        if (task_.progress) task_.progress(filled_.exchange(0));
    }

    const std::string* firstCopy(const struct stat& status) const {
        if (status.st_nlink < 2) return nullptr;
        const auto found = copies_.find({status.st_dev, status.st_ino});
        return found == copies_.end() ? nullptr : &found->second;
    }

    void remember(const struct stat& status, const std::string& name) {
        if (status.st_nlink < 2) return;
        std::string path;
        for (std::size_t index = 1; index < folders_.size(); ++index) {
            path += folders_[index].name + '/';
        }
        copies_.emplace(FileIdentity{status.st_dev, status.st_ino}, path + name);
    }

    std::error_code linkTo(const std::string& first, const std::string& name) const {
        if (linkat(top_, first.c_str(), chain_.current(), name.c_str(), 0) != 0) {
            return systemError();
        }
        return {};
    }

    int top_;
    struct stat topStatus_ = {};
    CopyTask& task_;
    std::atomic<std::uint64_t> filled_ = 0;  ///< by others, and not yet told of
    std::function<void()> whileWaiting_ = [this] { tellOfFilled(); };
    FolderChain chain_;            ///< the destination's folders
    std::vector<Folder> folders_;  ///< the source's folders, as they were before they were read
    std::map<FileIdentity, std::string> copies_;  ///< of entries with several names, from the top
    std::optional<PieceGroup> group_;             ///< the last member: its pieces use the others
};

}  // namespace

std::error_code copyFolderInto(int sourceParent, const std::string& name, int destination,
                               CopyTask& task) {
    FolderCopier copier(destination, task);
    if (const auto error = copier.start()) return error;
    return copier.finish(copier.walk(sourceParent, name));
}

}  // namespace installer
