#pragma once

#include <memory>
#include <string>

#include <sys/stat.h>
#include <sys/types.h>

#include "privileged/copies/TreeCopy.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

/// The tree that this process has copied last, if its entries had owner, group and mode before it
/// came to its place. Who is asked to give it these again finds that nothing is left to do. Any
/// change of the tree's top since then shows in its change time, and then nothing is known.
class FinishedTree {
  public:
    /// Where the tree is. Asked for under this very path, it is looked for in the open folder: one
    /// step instead of a walk.
    struct Place {
        std::string path;
        std::shared_ptr<const FileDescriptor> folder = nullptr;  ///< null: the path is walked
        std::string name = {};                                   ///< in the folder
    };

    void forget();

    /// `status` is that of the entry at its place.
    void remember(Place place, const struct stat& status, const CopyTask& task);

    [[nodiscard]] bool hasOwner(const std::string& path, uid_t owner, gid_t group) const;
    [[nodiscard]] bool hasMode(const std::string& path, mode_t mode) const;
    /// Whether no entry of the tree has an extended attribute.
    [[nodiscard]] bool hasNoAttributes(const std::string& path) const;

  private:
    [[nodiscard]] bool isAt(const std::string& path) const;
    [[nodiscard]] bool isSeenAt(const std::string& path) const;

    bool isKnown_ = false;
    Place place_;
    struct stat status_ = {};
    GivenAttributes given_;
    bool hasAttributes_ = false;
    mutable bool wasJustSeen_ = false;  ///< at its place, by the question before
};

}  // namespace installer
