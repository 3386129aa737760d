#include "tools/installerctl/records/TreeRecords.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/values/Paths.h"
#include "privileged/files/RegularFile.h"
#include "privileged/system/SystemError.h"
#include "privileged/trees/TreeWalk.h"
#include "tools/installerctl/records/Sha256.h"

namespace installer {

namespace {

/// The hash of what the descriptor has; empty if it cannot be read to its end.
std::string hashOf(int file, const ReadProgress& progress) {
    Sha256 hash;
    std::vector<char> buffer(std::size_t{1} << 18U);
    while (true) {
        const ssize_t count = ::read(file, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return {};
        if (count == 0) return hash.finish();
        const auto size = static_cast<std::size_t>(count);
        hash.add({buffer.data(), size});
        if (progress) progress(size);
    }
}

std::string targetOf(int parent, const std::string& name) {
    std::array<char, PATH_MAX> target{};
    const ssize_t size = ::readlinkat(parent, name.c_str(), target.data(), target.size());
    return size < 0 ? std::string() : std::string(target.data(), static_cast<std::size_t>(size));
}

EntryRecord recordOf(int parent, const std::string& name, const std::string& path,
                     const struct stat& status, const ReadProgress& progress) {
    EntryRecord record{.path = path, .mode = status.st_mode & modeBits, .contents = {}};
    if (S_ISDIR(status.st_mode)) {
        record.kind = EntryKind::folder;
    } else if (S_ISLNK(status.st_mode)) {
        record.kind = EntryKind::link;
        record.mode.reset();
        record.contents = targetOf(parent, name);
    } else if (S_ISREG(status.st_mode)) {
        record.size = static_cast<std::uint64_t>(status.st_size);
        const auto file = openRegularFile(parent, name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
        if (file) record.contents = hashOf(file.value().descriptor.get(), progress);
    }
    return record;
}

/// Collects the records on a walk, which tells names and not paths.
class Recorder final : public TreeVisitor {
  public:
    Recorder(const std::string& path, const ReadProgress& progress)
        : path_(parentPath(path)), progress_(progress) {}

    [[nodiscard]] Result<FileDescriptor> enterFolder(int parent, const std::string& name) override {
        const std::string path = joinPath(path_, name);
        if (const auto error = add(parent, name, path)) return error;
        Result<FileDescriptor> folder = TreeVisitor::enterFolder(parent, name);
        if (folder) path_ = path;
        return folder;
    }

    [[nodiscard]] std::error_code visitEntry(int parent, const std::string& name,
                                             unsigned char /*type*/) override {
        return add(parent, name, joinPath(path_, name));
    }

    [[nodiscard]] std::error_code leaveFolder(int /*parent*/, const std::string& /*name*/,
                                              int /*folder*/) override {
        path_ = parentPath(path_);
        return {};
    }

    [[nodiscard]] std::vector<EntryRecord> taken() { return std::move(records_); }

  private:
    std::error_code add(int parent, const std::string& name, const std::string& path) {
        auto record = recordEntryAt(parent, name, path, progress_);
        if (!record) return record.error();
        records_.push_back(std::move(record).value());
        return {};
    }

    std::string path_;  ///< of the folder that the walk is in
    const ReadProgress& progress_;
    std::vector<EntryRecord> records_;
};

}  // namespace

Result<EntryRecord> recordEntryAt(int parent, const std::string& name, const std::string& path,
                                  const ReadProgress& progress) {
    struct stat status{};
    if (::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return systemError();
    return recordOf(parent, name, path, status, progress);
}

Result<EntryRecord> recordEntry(const std::string& path, LinkPolicy policy,
                                const ReadProgress& progress) {
    const auto location = locate(path, policy);
    if (!location) return location.error();
    return recordEntryAt(location.value().parent.get(), location.value().name, path, progress);
}

Result<std::vector<EntryRecord>> recordTree(const std::string& path, LinkPolicy policy,
                                            const ReadProgress& progress) {
    const auto location = locate(path, policy);
    if (!location) return location.error();
    const int parent = location.value().parent.get();
    const std::string& name = location.value().name;
    struct stat status{};
    if (::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return systemError();
    Recorder recorder(path, progress);
    // A folder that cannot be entered keeps its record: what is in it is then missing.
    static_cast<void>(walkTree(parent, name, recorder, OnFailure::goOn));
    std::vector<EntryRecord> records = recorder.taken();
    std::ranges::sort(records, {}, &EntryRecord::path);
    return records;
}

}  // namespace installer
