#include "linux/files/CopyStager.h"

#include <algorithm>
#include <atomic>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "privileged/copies/EntryCopy.h"
#include "privileged/copies/NamelessFile.h"
#include "privileged/files/RegularFile.h"
#include "privileged/system/AwaitReadable.h"
#include "privileged/system/SystemError.h"
#include "privileged/trees/Temporary.h"

namespace installer {

namespace {

constexpr std::size_t mostFilesAhead = 128;
constexpr std::size_t mostFilesOfOneThread = 16;
constexpr std::uint64_t mostBytesAhead = 32ULL << 20;
constexpr std::uint64_t largestFile = 8ULL << 20;
constexpr std::uint64_t freeBytesNeeded = 4 * mostBytesAhead;
constexpr std::uint64_t freeFilesNeeded = 8 * mostFilesAhead;
constexpr std::uint64_t progressStep = 1ULL << 20;

/// Each file that is held ready keeps a descriptor.
std::size_t filesForTheDescriptorLimit() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return 1;
    return std::clamp<std::size_t>(limit.rlim_cur / 8, 1, mostFilesAhead);
}

std::string_view folderOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return path.substr(0, slash == 0 ? 1 : slash);
}

/// Ends where the path ends.
const char* nameOf(const std::string& path) {
    return path.c_str() + path.rfind('/') + 1;
}

bool hasName(const std::string& path) {
    return path.starts_with('/') && !path.ends_with('/') && !path.ends_with("/.") &&
           !path.ends_with("/..") && path.find('\0') == std::string::npos;
}

bool isUnchanged(const struct stat& before, const struct stat& now) {
    const auto same = [](const timespec& one, const timespec& other) {
        return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
    };
    return before.st_dev == now.st_dev && before.st_ino == now.st_ino &&
           before.st_size == now.st_size && before.st_mode == now.st_mode &&
           same(before.st_mtim, now.st_mtim) && same(before.st_ctim, now.st_ctim);
}

bool isSameEntry(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

void removeIfSame(int folder, const std::string& name, const struct stat& status) {
    struct stat found = {};
    const bool isSeen = fstatat(folder, name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0;
    if (isSeen && isSameEntry(found, status)) {
        static_cast<void>(unlinkat(folder, name.c_str(), 0));
    }
}

}  // namespace

/// One expected copy. Whoever changes its state from `waiting` fills it, and alone.
class CopyStager::Prepared {
  public:
    enum class State { notPrepared, waiting, beingFilled, filled, failed };

    std::string source;
    std::string destination;
    std::uint64_t bytes = 0;
    Folder sourceFolder;
    Folder stagingFolder;
    std::atomic<State> state = State::notPrepared;

    // Valid once it is filled.
    std::optional<NamelessFile> file;
    struct stat sourceStatus = {};
    CopyTask task;

    [[nodiscard]] bool begin() {
        State expected = State::waiting;
        return state.compare_exchange_strong(expected, State::beingFilled);
    }
};

void CopyStager::begin(std::function<std::optional<ExpectedCopy>()> next,
                       std::optional<GivenAttributes> given, Privileges privileges) {
    end();
    next_ = std::move(next);
    given_ = given;
    privileges_ = privileges;
    mayPrepare_ = true;
    mostFiles_ = threads_.count() > 0 ? filesForTheDescriptorLimit() : mostFilesOfOneThread;
    topUp();
}

void CopyStager::end() {
    giveUpPrepared();
    expected_.clear();
    next_ = nullptr;
    source_ = staging_ = {};
    destination_.forget();
}

bool CopyStager::giveUpPrepared() {
    bool any = false;
    for (const auto& copy : expected_) {
        any = any || copy->state != Prepared::State::notPrepared;
        giveUp(*copy);
    }
    bytes_ = 0;
    mayPrepare_ = false;
    return any;
}

void CopyStager::giveUp(Prepared& copy) {
    if (copy.begin()) copy.state = Prepared::State::failed;
    while (copy.state == Prepared::State::beingFilled) waitFor(copy, {});
    copy.file.reset();
    copy.state = Prepared::State::notPrepared;
}

void CopyStager::forgetFolder(const std::string& path) {
    const auto isThereOrBelow = [&path](const std::string& kept) {
        return kept.starts_with(path) && (kept.size() == path.size() || kept[path.size()] == '/');
    };
    for (KeptFolder* kept : {&source_, &staging_}) {
        if (isThereOrBelow(kept->path)) *kept = {};
    }
    destination_.doubtItsPath();
    if (isThereOrBelow(destination_.path())) destination_.forget();
}

std::shared_ptr<CopyStager::Prepared> CopyStager::take(const std::string& source,
                                                       const std::string& destination) {
    const auto isIt = [&](const std::shared_ptr<Prepared>& copy) {
        return copy->source == source && copy->destination == destination;
    };
    if (expected_.size() <= mostFiles_ / 2) topUp();
    const auto found = std::ranges::find_if(expected_, isIt);
    if (found == expected_.end()) return nullptr;
    auto copy = *found;
    for (auto earlier = expected_.begin(); earlier != found; ++earlier) giveUp(**earlier);
    for (auto gone = expected_.begin(); gone != found + 1; ++gone) bytes_ -= (*gone)->bytes;
    expected_.erase(expected_.begin(), found + 1);
    return copy;
}

void CopyStager::topUp() {
    while (next_ && expected_.size() < mostFiles_ && bytes_ < mostBytesAhead) {
        std::optional<ExpectedCopy> copy = next_();
        if (!copy) {
            next_ = nullptr;
            return;
        }
        auto prepared = std::make_shared<Prepared>();
        prepared->source = std::move(copy->source);
        prepared->destination = std::move(copy->destination);
        prepared->task.privileges = privileges_;
        prepared->task.given = given_;
        expected_.push_back(prepared);
        if (mayPrepare_ && !isUnsupported_ && copy->bytes <= largestFile) {
            prepared->bytes = copy->bytes;
            bytes_ += copy->bytes;
            prepare(prepared);
        }
    }
}

void CopyStager::prepare(const std::shared_ptr<Prepared>& copy) {
    if (!hasName(copy->source) || !hasName(copy->destination)) return;
    copy->sourceFolder = sourceFolder(folderOf(copy->source));
    copy->stagingFolder = stagingFolder(folderOf(copy->destination));
    if (!copy->sourceFolder || !copy->stagingFolder) return;
    copy->state = Prepared::State::waiting;
    if (threads_.count() == 0) return;  // filled at its own moment
    threads_.add([this, copy] {
        if (copy->begin()) fill(*copy);
    });
}

void CopyStager::fill(Prepared& copy) {
    const auto work = [&]() -> bool {
        auto source =
            openRegularFile(copy.sourceFolder->get(), nameOf(copy.source), O_RDONLY | O_NOFOLLOW);
        if (!source) return false;
        copy.sourceStatus = source.value().status;
        auto file = NamelessFile::make(copy.stagingFolder->get());
        if (NamelessFile::isUnsupported(file.error())) isUnsupported_ = true;
        if (!file) return false;
        const int descriptor = file.value().descriptor();
        if (fillFile(source.value().descriptor.get(), copy.sourceStatus, descriptor, unknownMode,
                     copy.task, {})) {
            return false;
        }
        copy.file = std::move(file).value();
        return true;
    };
    const bool isFilled = work();
    const std::scoped_lock guard(mutex_);
    copy.state = isFilled ? Prepared::State::filled : Prepared::State::failed;
    filled_.notify_all();
}

/// Works at other copies meanwhile, where there are some.
void CopyStager::waitFor(Prepared& copy, const CopyProgress& progress) {
    if (copy.begin()) fill(copy);
    const auto isOver = [&] { return copy.state != Prepared::State::beingFilled; };
    while (!isOver()) {
        if (threads_.runOne()) continue;
        if (progress) progress(0);
        std::unique_lock guard(mutex_);
        filled_.wait_for(guard, wakeInterval, isOver);
    }
}

std::optional<std::error_code> CopyStager::publish(Prepared& copy, const CopyProgress& progress,
                                                   FinishedTree& finished) {
    if (copy.state == Prepared::State::notPrepared) return std::nullopt;
    waitFor(copy, progress);
    if (copy.state != Prepared::State::filled) return std::nullopt;
    // Closed on return, although the thread that filled it may keep `copy` for a moment longer: a
    // program that somebody has open for writing cannot be started.
    const NamelessFile file = std::move(*copy.file);
    copy.file.reset();
    struct stat status = {};
    if (fstatat(copy.sourceFolder->get(), nameOf(copy.source), &status, AT_SYMLINK_NOFOLLOW) != 0 ||
        !isUnchanged(copy.sourceStatus, status)) {
        return std::nullopt;
    }
    const Folder folder = destination_.at(folderOf(copy.destination));
    if (!folder) return std::nullopt;
    const std::string name = nameOf(copy.destination);
    if (const auto error = file.publish(folder->get(), name)) {
        if (error == std::errc::file_exists) return error;
        destination_.forget();
        return std::nullopt;
    }
    if (fstat(file.descriptor(), &status) != 0) {
        static_cast<void>(unlinkat(folder->get(), name.c_str(), 0));
        return std::nullopt;
    }
    if (!leadsTo(copy.destination, status)) {
        // The kept folder was moved or removed.
        destination_.forget();
        removeIfSame(folder->get(), name, status);
        return std::nullopt;
    }
    destination_.entryHasCome(name, status);
    finished.remember({copy.destination, folder, name}, status, copy.task);
    for (auto rest = static_cast<std::uint64_t>(status.st_size); progress && rest > 0;) {
        const std::uint64_t step = std::min(rest, progressStep);
        progress(step);
        rest -= step;
    }
    return std::error_code();
}

CopyStager::Folder CopyStager::sourceFolder(std::string_view folderPath) {
    if (source_.path == folderPath) return source_.folder;
    const std::string path(folderPath);
    auto folder = openFolder(path, policy_);
    source_ = {path,
               folder ? std::make_shared<FileDescriptor>(std::move(folder).value()) : nullptr};
    return source_.folder;
}

/// A folder on whose file system the copies into that folder can be filled: it itself, or the
/// nearest one above it, as long as it is missing. What a folder hands down to new entries must be
/// the same in both.
CopyStager::Folder CopyStager::stagingFolder(std::string_view folderPath) {
    if (staging_.path == folderPath) return staging_.folder;
    const std::string path(folderPath);
    staging_ = {path, nullptr};
    std::string existing = path;
    auto folder = openFolder(existing, policy_);
    while (folder.error() == std::errc::no_such_file_or_directory && existing != "/") {
        existing = std::string(folderOf(existing));
        folder = openFolder(existing, policy_);
    }
    if (!folder || !hasRoom(folder.value().get())) return nullptr;
    struct stat status = {};
    const bool isTheSame = existing == path;
    if (!isTheSame &&
        (fstat(folder.value().get(), &status) != 0 || (status.st_mode & S_ISGID) != 0)) {
        return nullptr;
    }
    staging_.folder = std::make_shared<FileDescriptor>(std::move(folder).value());
    return staging_.folder;
}

/// Whether the path leads to the entry of that status, which was just put into the kept folder.
bool CopyStager::leadsTo(const std::string& path, const struct stat& status) {
    if (destination_.isAtItsPath()) return true;
    struct stat found = {};
    return lstat(path.c_str(), &found) == 0 && isSameEntry(found, status);
}

/// What is held ready must never be why something else does not fit.
bool CopyStager::hasRoom(int folder) {
    struct statvfs room = {};
    if (::fstatvfs(folder, &room) != 0) return false;
    const bool hasFiles = room.f_files == 0 || room.f_favail >= freeFilesNeeded;
    return hasFiles && room.f_bavail * room.f_frsize >= freeBytesNeeded;
}

}  // namespace installer
