#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include <sys/types.h>

namespace installer {

/// Writes small files into the user's own folders.
///
/// If this process is root and HOME is another user's, new files and folders are given to the owner
/// of the home folder: settings that only root can change would lock that user out. Behind a link
/// that leads out of the home folder, a new entry is given away only if its folder already belongs
/// to that user. Links before the last component of a path are followed; root follows only links
/// that belong to root, and links of that user that lead to a folder of that user's; any other is
/// ELOOP. This holds for the path of the home folder too.
class UserFiles {
  public:
    enum class Durability {
        whenConvenient,  ///< the system writes it to the disk in its own time
        atOnce,          ///< on the disk before the old file is replaced
    };

    explicit UserFiles(std::optional<std::string> homeFolder);

    /// Makes the file with the contents, or replaces an existing one and keeps its owner and
    /// permissions. Makes the missing folders above it. Atomic: the path holds the old file or the
    /// whole new one. Does not follow links: a link at the path is replaced. A failure leaves what
    /// was there, and the folders made so far. A temporary that a process left behind in that
    /// folder when it died is removed.
    [[nodiscard]] std::error_code replace(const std::string& path, std::string_view contents,
                                          Durability durability) const;

  private:
    std::optional<std::string> home_;
};

}  // namespace installer
