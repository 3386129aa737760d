#pragma once

#include <optional>
#include <string_view>

#include <sys/stat.h>
#include <sys/types.h>

#include "foundation/values/Result.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

/// The rule by which a walk decides which links it follows.
class LinkTrust {
  public:
    /// Every link: the caller acts with no more rights than the owner of the link.
    [[nodiscard]] static LinkTrust any() { return LinkTrust(Kind::any, std::nullopt); }

    /// Links that belong to root or to that user, wherever they lie.
    [[nodiscard]] static LinkTrust ofRootOr(std::optional<uid_t> user) {
        return LinkTrust(Kind::ofOwners, user);
    }

    /// Links that only root can have put there: every folder from "/" down to the link belongs to
    /// root, and nobody else can write to it. The sticky bit does not help, since it lets anybody
    /// add a link.
    [[nodiscard]] static LinkTrust inRootsFolders() {
        return LinkTrust(Kind::inRootsFolders, std::nullopt);
    }

    /// `rootAlone`: every folder from "/" down to the link can be changed by root alone.
    [[nodiscard]] bool mayFollow(const struct stat& link, bool rootAlone) const;

    /// Whether the walk may take a folder's "..". Only a folder that nobody can move has a parent
    /// that is certain to be the one through which the walk came.
    [[nodiscard]] bool mayGoUp(bool rootAlone) const;

  private:
    enum class Kind { any, ofOwners, inRootsFolders };
    LinkTrust(Kind kind, std::optional<uid_t> user) : kind_(kind), user_(user) {}

    Kind kind_;
    std::optional<uid_t> user_;
};

/// Goes down the path component by component and resolves each link itself, so that nothing that is
/// swapped meanwhile leads past the rule. An absolute path begins at "/", any other at `start`.
/// Gives the folder at the end of the path (O_PATH: it cannot be listed). Errors: ELOOP for a link
/// or a ".." that the rule forbids, and for more than 40 links; ENOTDIR for an entry that is no
/// folder; else the system's own.
[[nodiscard]] Result<FileDescriptor> walkPath(FileDescriptor start, std::string_view path,
                                              const LinkTrust& trust);

}  // namespace installer
