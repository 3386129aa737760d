#pragma once

#include <map>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "foundation/values/WriteGrant.h"
#include "ports/Authorization.h"
#include "privileged/wall/ProtectedFolders.h"

namespace installer {

/// Where links in the paths of a run lead. Root follows no link that an ordinary user could have
/// made, so a Photoshop whose folder is a link to another disk is named to root by the folder that
/// the link leads to. The administrator is shown that folder, and the helper judges it like any
/// other. Everybody else keeps the path as it is.
class LinkedFolders {
  public:
    /// Links that belong to root or to the user are followed: another user's could make root
    /// write where only that user wants it.
    explicit LinkedFolders(uid_t user) : user_(user) {}

    /// The same grant with the folders that its paths lead to now. What was known before is
    /// forgotten.
    [[nodiscard]] WriteGrant follow(const WriteGrant& grant);

    /// The path by which the grant knows it, if the grant had to follow a link to it. Else the path
    /// itself. So a link that has been changed meanwhile leads to nothing that is granted.
    [[nodiscard]] std::string followed(const std::string& path) const;

    /// Why root would not go where links on the way to the folder lead now; what is missing of its
    /// path does not count. `protectedFolders` are those that root keeps out of.
    [[nodiscard]] LinkRefusal refusal(const std::string& folder,
                                      const ProtectedFolders& protectedFolders) const;

    /// Whether there is any path that the grant knows by another one. Hardly ever.
    [[nodiscard]] bool any() const { return !folders_.empty(); }

  private:
    [[nodiscard]] std::string ledTo(const std::string& folder) const;

    uid_t user_;
    std::map<std::string, std::string, std::less<>>
        folders_;  ///< those that a link leads away from
};

}  // namespace installer
