#include "tools/installerctl/records/ReceiptFile.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/values/Paths.h"
#include "foundation/values/SystemFolders.h"
#include "linux/files/LinuxSearchPaths.h"
#include "linux/files/UserFiles.h"
#include "ports/Authorization.h"
#include "privileged/files/FolderCreation.h"
#include "privileged/files/FolderListing.h"
#include "privileged/files/Location.h"
#include "privileged/files/RegularFile.h"
#include "privileged/system/Accounts.h"
#include "privileged/system/WriteAll.h"

namespace installer {

namespace {

constexpr std::size_t largestReceipt = std::size_t{64} << 20U;
constexpr std::string_view suffix = ".json";
constexpr mode_t receiptMode = 0644;

/// Whether nobody but root can change it. A group of root's own counts as root.
bool isRootsAlone(const struct stat& status) {
    if (status.st_uid != 0 || (status.st_mode & S_IWOTH) != 0) return false;
    return status.st_gid == 0 || (status.st_mode & S_IWGRP) == 0;
}

/// The contents of a file that only root can have written; else why not.
std::string trustedContents(const std::string& path, std::string& problem) {
    const auto location = locate(path, LinkPolicy::trustedOnly);
    if (!location) {
        problem = location.error().message();
        return {};
    }
    const int folder = location.value().parent.get();
    struct stat status{};
    if (::fstat(folder, &status) != 0 || !isRootsAlone(status)) {
        problem = "other users can change its folder";
        return {};
    }
    auto file = openRegularFile(folder, location.value().name,
                                O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (!file) {
        problem = file.error().message();
        return {};
    }
    if (!isRootsAlone(file.value().status) || file.value().status.st_nlink != 1) {
        problem = "other users can change it";
        return {};
    }
    auto text = readRegularFile("/proc/self/fd/" + std::to_string(file.value().descriptor.get()),
                                largestReceipt);
    if (!text) {
        problem = text.error().message();
        return {};
    }
    return std::move(text).value();
}

bool isThere(const std::string& path) {
    struct stat status{};
    return ::lstat(path.c_str(), &status) == 0;
}

bool succeeded(Authorization& rights, const char* tool, const std::vector<std::string>& arguments) {
    const PrivilegedLaunch launch = rights.execute(tool, arguments);
    if (launch.status != 0 || !launch.tool) return false;
    launch.tool->waitUntilEnded();
    return launch.tool->hasSucceeded();
}

/// A file of this process's own, for the administrator to copy.
class HandedOver {
  public:
    explicit HandedOver(std::string_view text) {
        std::error_code error;
        name_ = (std::filesystem::temp_directory_path(error) / "receipt-XXXXXX").string();
        file_ = FileDescriptor(::mkstemp(name_.data()));
        if (!file_ || ::fchmod(file_.get(), receiptMode) != 0 || writeAll(file_.get(), text)) {
            file_.reset();
        }
    }
    ~HandedOver() { ::unlink(name_.c_str()); }
    HandedOver(const HandedOver&) = delete;
    HandedOver& operator=(const HandedOver&) = delete;

    [[nodiscard]] bool isWritten() const { return static_cast<bool>(file_); }
    [[nodiscard]] const std::string& path() const { return name_; }

  private:
    std::string name_;
    FileDescriptor file_;
};

/// The mask of new files, for as long as this object lives.
class Mask {
  public:
    explicit Mask(mode_t mask) : before_(::umask(mask)) {}
    ~Mask() { ::umask(before_); }
    Mask(const Mask&) = delete;
    Mask& operator=(const Mask&) = delete;

  private:
    mode_t before_;
};

std::string writtenByRoot(const std::string& folder, const std::string& file,
                          std::string_view text) {
    constexpr mode_t folderMode = 0755;
    if (const auto error = makeFolders(folder, folderMode, LinkPolicy::trustedOnly)) {
        return error.message();
    }
    const Mask mask(S_IWGRP | S_IWOTH);
    const auto error = UserFiles(std::nullopt).replace(file, text, UserFiles::Durability::atOnce);
    return error ? error.message() : std::string();
}

std::string writtenThroughHelper(Authorization& rights, const std::string& folder,
                                 const std::string& file, std::string_view text) {
    const HandedOver source(text);
    if (!source.isWritten()) return "no temporary file can be written";
    const bool isDone =
        (isThere(folder) || succeeded(rights, "/bin/mkdir", {"-m775", "-p", folder})) &&
        succeeded(rights, "/bin/rm", {"-fR", file}) &&
        succeeded(rights, "/bin/cp", {"-R", source.path(), file});
    return isDone ? std::string() : "the administrator could not write it";
}

}  // namespace

std::string ReceiptFolder::path() const {
    return paths_.onTargetVolume("/Library/Receipts");
}

std::string ReceiptFolder::fileOf(const std::string& identifier) const {
    return joinPath(path(), identifier + std::string(suffix));
}

ReceiptFolder::Found ReceiptFolder::parsed(std::string_view text) const {
    ReadReceipt read = parsedReceipt(
        text, [&](const std::string& path) { return paths_.onTargetVolume(path); },
        [&](const Receipt& receipt, const std::string& path) {
            return isForbidden(receipt, path);
        });
    if (!read.problem.empty()) return {std::nullopt, read.problem};
    return {std::move(read.receipt), ""};
}

/// The homes of the users that it was installed for are no folders of the system. What calls itself
/// a home must be where homes are, or where the account has it.
bool ReceiptFolder::isForbidden(const Receipt& receipt, const std::string& path) const {
    std::vector<std::string> homes;
    for (const Receipt::User& user : receipt.users) {
        const std::string home = paths_.asSeenOnTargetVolume(user.home);
        const std::string above = parentPath(home);
        const auto account = userNamed(user.login);
        const bool isHome = above == "/home" || above == "/Users" ||
                            (account && account.value().home == home) ||
                            !isInSystemFolder(home, {});
        if (!home.empty() && isHome) homes.push_back(home);
    }
    return isInSystemFolder(paths_.asSeenOnTargetVolume(path), homes);
}

ReceiptFolder::Found ReceiptFolder::read(const std::string& identifier) const {
    const std::string file = fileOf(identifier);
    if (!isThere(file)) return {};
    std::string problem;
    const std::string text = trustedContents(file, problem);
    if (!problem.empty()) return {std::nullopt, problem};
    Found found = parsed(text);
    if (found.receipt && found.receipt->identifier != identifier) {
        return {std::nullopt, "it is another product's"};
    }
    return found;
}

std::vector<Receipt> ReceiptFolder::others(const std::string& identifier) const {
    std::vector<Receipt> receipts;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(path(), error)) {
        std::string name = entry.path().filename().string();
        if (!name.ends_with(suffix)) continue;
        name.resize(name.size() - suffix.size());
        if (name == identifier || !isReceiptName(name)) continue;
        Found found = read(name);
        if (found.receipt) receipts.push_back(std::move(*found.receipt));
    }
    return receipts;
}

std::string ReceiptFolder::write(const Receipt& receipt, Authorization& rights) const {
    const std::string text = receiptText(
        receipt, [&](const std::string& path) { return paths_.asSeenOnTargetVolume(path); });
    const std::string file = fileOf(receipt.identifier);
    return ::geteuid() == 0 ? writtenByRoot(path(), file, text)
                            : writtenThroughHelper(rights, path(), file, text);
}

}  // namespace installer
