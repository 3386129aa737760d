#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <system_error>

#include <sys/types.h>

#include "privileged/files/Location.h"

namespace installer {

class FileSystemUser;
class Workers;

/// Called with the number of bytes copied since the last call: at least once for each MiB, and with
/// 0 at each entry of a folder, so that a copy of many empty ones is seen to go on.
using CopyProgress = std::function<void(std::uint64_t)>;

/// Called with the name of each file of a folder before it is copied, by the thread that asked for
/// the copy.
using FileBegins = std::function<void(const std::string& name)>;

/// What lets a program run with its file's rights: the set-user-ID and set-group-ID bits and the
/// file's capabilities.
enum class Privileges { keep, drop };

/// Owner, group and mode of every entry of a tree; links have no mode.
struct GivenAttributes {
    uid_t owner = 0;
    gid_t group = 0;
    mode_t mode = 0;

    friend bool operator==(const GivenAttributes&, const GivenAttributes&) = default;
};

/// One copy: what it obeys, and what it finds out.
struct CopyTask {
    CopyProgress progress = {};
    FileBegins fileBegins = {};
    Privileges privileges = Privileges::keep;
    /// Given to each entry before it can be seen at its place, instead of the source's mode, where
    /// this process may.
    std::optional<GivenAttributes> given = std::nullopt;
    /// By whose rights the source is opened; null for this process's own.
    const FileSystemUser* reader = nullptr;
    Workers* workers = nullptr;  ///< who helps to fill the files of a folder; null for nobody

    // Found out, from several threads.
    std::atomic<bool> allGiven = true;        ///< no entry did without what was to be given
    std::atomic<bool> hasAttributes = false;  ///< some entry has an extended attribute
};

/// Copies an entry and everything in it, as `FileManager::copy` promises: whole or not at all
/// (a nameless file is filled and then named, or a temporary sibling is filled and then renamed
/// without replacing), links as links, with modes,
/// modification times, extended attributes and hard links; EINVAL for a FIFO, device or socket
/// anywhere in it. A temporary that a process left behind when it died is removed by the next
/// copy into that folder.
[[nodiscard]] std::error_code copyTree(const std::string& source, const std::string& destination,
                                       LinkPolicy policy, CopyTask& task);

/// The same by one thread, and without attributes to give.
[[nodiscard]] std::error_code copyTree(const std::string& source, const std::string& destination,
                                       LinkPolicy policy, const CopyProgress& progress,
                                       Privileges privileges = Privileges::keep);

/// The same for entries whose folders are open.
[[nodiscard]] std::error_code copyEntry(const Location& source, const Location& destination,
                                        CopyTask& task);

}  // namespace installer
