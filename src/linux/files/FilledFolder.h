#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <sys/stat.h>

#include "foundation/values/Result.h"
#include "privileged/files/Location.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

/// The folder into which copies go one after the other, kept open. While it is known that its path
/// leads there, what is asked about its entries is asked of the open folder, and the path is not
/// walked again. That is known from a look at the folder's path until the next copy has come.
class FilledFolder {
  public:
    using Folder = std::shared_ptr<const FileDescriptor>;

    explicit FilledFolder(LinkPolicy policy) : policy_(policy) {}

    /// The folder at the path, which is kept from now on. Temporaries that dead processes have left
    /// in it are removed when it is opened. Null if it cannot be opened.
    [[nodiscard]] Folder at(std::string_view path);

    /// The entry's status, a link's own; the path is one that the system calls take. A look at the
    /// kept folder itself finds out whether its path still leads there.
    [[nodiscard]] Result<struct stat> statusOf(const std::string& path);

    /// Whether the path leads to the kept folder, as far as is known.
    [[nodiscard]] bool isAtItsPath() const { return isAtItsPath_; }

    /// A copy of that name, with that status, has just come into the folder. It is the answer if
    /// the next look is at it: whoever copies looks whether the copy is there.
    void entryHasCome(std::string_view name, const struct stat& status);

    /// What is known of the path may be wrong by now.
    void doubtItsPath();

    /// Closes the folder.
    void forget();

    [[nodiscard]] const std::string& path() const { return path_; }

  private:
    [[nodiscard]] std::string_view nameOfEntryAt(std::string_view path) const;

    LinkPolicy policy_;
    std::string path_;
    Folder folder_;
    struct stat status_ = {};  ///< of the folder when it was opened
    bool isAtItsPath_ = false;
    std::string newest_;  ///< the entry that has come, if nothing was looked at since
    struct stat newestStatus_ = {};
};

}  // namespace installer
