#include "privileged/trees/TreeSize.h"

#include <set>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "privileged/files/Location.h"
#include "privileged/system/SystemError.h"
#include "privileged/trees/TreeWalk.h"

namespace installer {

namespace {

class SizeCounter : public TreeVisitor {
  public:
    std::error_code visitEntry(int parent, const std::string& name, unsigned char type) override {
        if (type != DT_REG) return {};
        struct stat status = {};
        if (fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return systemError();
        const bool isNew =
            status.st_nlink < 2 || counted_.insert({status.st_dev, status.st_ino}).second;
        if (isNew) bytes_ += static_cast<std::uint64_t>(status.st_size);
        return {};
    }

    std::error_code leaveFolder(int /*parent*/, const std::string& /*name*/,
                                int /*folder*/) override {
        return {};
    }

    [[nodiscard]] std::uint64_t bytes() const { return bytes_; }

  private:
    std::uint64_t bytes_ = 0;
    std::set<std::pair<dev_t, ino_t>> counted_;  ///< files with several names
};

}  // namespace

std::uint64_t bytesInTree(const std::string& path) {
    const auto location = locate(path, LinkPolicy::follow);
    if (!location) return 0;
    SizeCounter counter;
    // What cannot be looked at is left to the copy, which will say so.
    static_cast<void>(
        walkTree(location.value().parent.get(), location.value().name, counter, OnFailure::goOn));
    return counter.bytes();
}

}  // namespace installer
