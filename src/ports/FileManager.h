#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "foundation/values/Result.h"
#include "ports/ProgressSink.h"

namespace installer {

enum class FileType { regular, folder, symbolicLink, other };

/// Seconds since 1970 with the file system's own precision.
using FileTime = std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds>;

struct FileAttributes {
    FileType type = FileType::other;
    std::uint32_t permissions = 0;  ///< the twelve mode bits
    FileTime modificationDate;
};

/// What is to be changed of an entry; what holds no value stays as it is.
struct FileAttributeChanges {
    std::optional<std::string> owner;  ///< a login name
    /// A group's name; "admin" is the system's administrators, whatever they are called there.
    std::optional<std::string> group;
    std::optional<std::uint32_t> permissions;  ///< the twelve mode bits, set exactly
};

/// One entry met by `FileManager::walk`.
struct WalkEntry {
    std::string path;
    FileType type = FileType::other;
    bool isPackage = false;  ///< a folder that is presented as one item; it is not descended into
};

enum class WalkDepth { entries, everything };

/// One entry of a tree that `FileManager::readTree` has read.
struct TreeEntry {
    std::string name;
    FileType type = FileType::other;
    bool isPackage = false;   ///< a folder that is presented as one item
    std::uint64_t bytes = 0;  ///< the size of a regular file, else 0
    /// Tells the names of one file in the tree: equal numbers are the same file. 0 for a regular
    /// file that has only one name anywhere, and for all other entries.
    std::uint64_t sharedFile = 0;
    bool isUnreadable = false;       ///< a folder whose entries could not be listed
    std::vector<TreeEntry> entries;  ///< of a folder, in the file system's own order
};

/// One copy that a caller is going to ask for.
struct ExpectedCopy {
    std::string source;
    std::string destination;
    std::uint64_t bytes = 0;  ///< that it moves
};

/// The copies that a caller is going to ask for, in their order.
struct CopySchedule {
    /// Gives the next one, nullopt after the last. Empty for no schedule.
    std::function<std::optional<ExpectedCopy>()> next = {};
    /// What the caller is going to give to each copy and everything in it.
    FileAttributeChanges attributes = {};
};

/// A file that was opened for writing. Destroying it closes the file.
class WritableFile {
  public:
    virtual ~WritableFile() = default;

    /// Writes the text at the file's current place (its start, at first), in one call where the
    /// system takes it in one. Not atomic: a failure can leave a part of the text.
    [[nodiscard]] virtual std::error_code write(std::string_view text) = 0;

    /// Cuts the file off at that size, or fills it up with NULs to it. The place where the next
    /// text goes stays. Atomic: a failure leaves the file as it was.
    [[nodiscard]] virtual std::error_code setSize(std::uint64_t size) = 0;
};

/// Everything that the core does with files, as the current user. No operation throws, and none
/// waits for a FIFO's other end or for a device. Relative paths mean nothing here: every
/// operation refuses them, and every path that holds a NUL, as an entry that does not exist.
///
/// No operation logs that a folder cannot be listed: a folder that is missing or closed to the user
/// is normal during discovery. A caller to whom it matters logs it.
///
/// "Follows links" below is about the path's last component; links before it are always followed.
class FileManager {
  public:
    virtual ~FileManager() = default;

    /// Whether there is an entry at the path, of whatever type, a dangling link too. Does not
    /// follow links.
    [[nodiscard]] virtual bool exists(const std::string& path) = 0;

    /// The names in the folder, hidden ones included, in the file system's own order. Follows
    /// links. An error when the folder is missing, unreadable or no folder; saying so is left to
    /// the caller.
    [[nodiscard]] virtual Result<std::vector<std::string>> list(const std::string& folder) = 0;

    /// Calls `visit` for what is in the folder, in the file system's own order, a folder before
    /// its contents. Entries whose names begin with a dot are left out; packages and links are
    /// visited, never entered. What cannot be read is passed over. Follows links for `folder`
    /// itself only. `visit` may change the tree: each folder is read whole before its entries are
    /// visited.
    virtual void walk(const std::string& folder, WalkDepth depth,
                      const std::function<void(const WalkEntry&)>& visit) = 0;

    /// Everything in the folder, hidden entries and the contents of packages included, each folder
    /// listed once. Links are entries of their own. Follows links for `folder` itself only. A
    /// folder in the tree that cannot be listed is marked, and the rest is read; an error when
    /// `folder` itself is missing, unreadable or no folder. Tells `progress`, when one is given,
    /// from time to time that it goes on, with 0 bytes.
    [[nodiscard]] virtual Result<std::vector<TreeEntry>> readTree(const std::string& folder,
                                                                  ProgressSink* progress) = 0;

    /// Whether the path is a folder that is presented as one item: by its name's suffix, whatever
    /// it holds. Does not follow links.
    [[nodiscard]] virtual bool isPackage(const std::string& path) = 0;

    /// Copies the entry and everything in it to `destination`, which must not exist. Atomic: the
    /// destination appears whole or not at all; an existing one is an error and stays untouched,
    /// and what a failure leaves is nothing. Does not follow links: a link is copied as a link,
    /// its target untouched. Keeps permissions, modification times, extended attributes, and hard
    /// links within the item. A FIFO, device or socket anywhere in the item is an error. The
    /// parent folder must exist. Tells `progress`, when one is given, as bytes are copied.
    [[nodiscard]] virtual std::error_code copy(const std::string& source,
                                               const std::string& destination,
                                               ProgressSink* progress) = 0;

    /// Says which copies come next, so that they can be prepared out of sight; asks the schedule
    /// for them bit by bit, until the next call of this operation. Nothing is seen of it but that
    /// the copies are faster, and that a copy may have its final owner, group and permissions from
    /// the moment on at which it appears. A copy that is left out, or that was not expected, is as
    /// good as any other. An empty schedule ends it.
    virtual void expectCopies(CopySchedule schedule) = 0;

    /// The bytes that a copy of the entry will tell its sink of, all in all: the sizes of the
    /// regular files in it, hidden ones and those in packages included, and a file with several
    /// names in it only once. What is missing or cannot be read counts as 0. Does not follow links.
    [[nodiscard]] virtual std::uint64_t bytesToCopy(const std::string& path) = 0;

    /// The bytes that the user may still write to the file system that holds the path, or that
    /// would hold it: the nearest folder above it that exists. Follows links. nullopt if nobody
    /// knows.
    [[nodiscard]] virtual std::optional<std::uint64_t> freeBytes(const std::string& path) = 0;

    /// Removes the entry and everything in it. Atomic at the path: the entry is first taken from
    /// it in one step, then its contents are removed; a failure leaves it either whole at its
    /// path or gone from it. Does not follow links, at no depth. No entry there is an error.
    [[nodiscard]] virtual std::error_code remove(const std::string& path) = 0;

    /// Makes the folder and those above it that are missing, each with exactly the permissions
    /// given, whatever the process's mask. An existing folder is a success and is not changed;
    /// any other existing entry is an error. Not atomic: a failure leaves the folders made so far.
    /// Follows links.
    [[nodiscard]] virtual std::error_code createFolders(const std::string& folder,
                                                        std::uint32_t permissions) = 0;

    /// What the entry is. Does not follow links.
    [[nodiscard]] virtual Result<FileAttributes> attributes(const std::string& path) = 0;

    /// Changes owner and group first, then permissions (a change of owner clears some of them).
    /// Does not follow links: a link's own owner is changed, its permissions are left alone. A
    /// failure leaves what was changed before it.
    [[nodiscard]] virtual std::error_code setAttributes(const std::string& path,
                                                        const FileAttributeChanges& changes) = 0;

    /// The first bytes of a regular file, at most `limit`. Follows links. A folder, FIFO, device
    /// or socket cannot be opened.
    [[nodiscard]] virtual Result<std::string> read(const std::string& path, std::size_t limit) = 0;

    /// Makes the file with the contents and default permissions, replacing an existing file.
    /// Atomic: the path holds the old file or the whole new one. Does not follow links: a link
    /// at the path is replaced. A failure leaves what was there.
    [[nodiscard]] virtual std::error_code createFile(const std::string& path,
                                                     std::string_view contents) = 0;

    /// Opens an existing regular file for writing from its start, without creating or emptying
    /// it. Does not follow links. A failure leaves it as it was.
    [[nodiscard]] virtual Result<std::unique_ptr<WritableFile>> openForWriting(
        const std::string& path) = 0;
};

}  // namespace installer
