#include "privileged/trees/TreeAttributes.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "privileged/files/EntryMode.h"
#include "privileged/system/SystemError.h"
#include "privileged/trees/TreeWalk.h"

namespace installer {

namespace {

std::error_code codeOf(int result) {
    return result == 0 ? std::error_code() : systemError();
}

class OwnerVisitor : public TreeVisitor {
  public:
    OwnerVisitor(uid_t owner, gid_t group) : owner_(owner), group_(group) {}

    std::error_code visitEntry(int parent, const std::string& name, unsigned char) override {
        return codeOf(fchownat(parent, name.c_str(), owner_, group_, AT_SYMLINK_NOFOLLOW));
    }

    std::error_code leaveFolder(int, const std::string&, int folder) override {
        return codeOf(fchown(folder, owner_, group_));
    }

  private:
    uid_t owner_;
    gid_t group_;
};

class ModeVisitor : public TreeVisitor {
  public:
    explicit ModeVisitor(mode_t mode) : mode_(mode & 07777) {}

    /// A folder that cannot be read may become readable by the very change.
    Result<FileDescriptor> enterFolder(int parent, const std::string& name) override {
        auto folder = TreeVisitor::enterFolder(parent, name);
        if (folder.error() != std::errc::permission_denied) return folder;
        if (const auto error = setEntryMode(parent, name, mode_)) return error;
        return TreeVisitor::enterFolder(parent, name);
    }

    std::error_code visitEntry(int parent, const std::string& name, unsigned char type) override {
        return type == DT_LNK ? std::error_code() : setEntryMode(parent, name, mode_);
    }

    std::error_code leaveFolder(int, const std::string&, int folder) override {
        return codeOf(fchmod(folder, mode_));
    }

  private:
    mode_t mode_;
};

class AttributeRemover : public TreeVisitor {
  public:
    explicit AttributeRemover(const std::string& attribute) : attribute_(attribute) {}

    std::error_code visitEntry(int parent, const std::string& name, unsigned char type) override {
        // Only files and folders can have user attributes, and opening a device can do harm.
        if (type != DT_REG) return {};
        const FileDescriptor file(
            openat(parent, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        return file ? removeFrom(file.get()) : systemError();
    }

    std::error_code leaveFolder(int, const std::string&, int folder) override {
        return removeFrom(folder);
    }

  private:
    std::error_code removeFrom(int entry) const {
        if (fremovexattr(entry, attribute_.c_str()) == 0) return {};
        if (errno == ENODATA || errno == EOPNOTSUPP) return {};
        return systemError();
    }

    const std::string& attribute_;
};

std::error_code visitTree(const std::string& path, LinkPolicy policy, TreeVisitor& visitor) {
    const auto location = locate(path, policy);
    if (!location) return location.error();
    return walkTree(location.value().parent.get(), location.value().name, visitor, OnFailure::goOn);
}

}  // namespace

std::error_code setOwnerOfTree(const std::string& path, uid_t owner, gid_t group,
                               LinkPolicy policy) {
    OwnerVisitor visitor(owner, group);
    return visitTree(path, policy, visitor);
}

std::error_code setModeOfTree(const std::string& path, mode_t mode, LinkPolicy policy) {
    ModeVisitor visitor(mode);
    return visitTree(path, policy, visitor);
}

std::error_code removeAttributeOfTree(const std::string& path, const std::string& attribute,
                                      LinkPolicy policy) {
    AttributeRemover visitor(attribute);
    return visitTree(path, policy, visitor);
}

}  // namespace installer
