#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "ports/FileManager.h"

namespace installer {

/// The folders of a payload, each read once, when it is first asked for.
class PayloadTrees {
  public:
    /// Both outlive this object. `progress` may be null.
    explicit PayloadTrees(FileManager& files, ProgressSink* progress = nullptr)
        : files_(files), progress_(progress) {}

    using Entries = std::vector<TreeEntry>;

    /// What is in the folder; null when it cannot be read. Valid as long as this object.
    [[nodiscard]] const Entries* entriesOf(const std::string& folder);

    /// What is in the folder `path` somewhere below `top`; null when it cannot be read. Taken from
    /// the tree of `top`, unless the way there is not made of plain folders: links before a path's
    /// end are followed, and only the file manager can do that.
    [[nodiscard]] const Entries* entriesBelow(const std::string& top, const std::string& path);

  private:
    FileManager& files_;
    ProgressSink* progress_;
    std::map<std::string, Result<Entries>> trees_;
};

/// Calls `visit` for the entries of a tree that the rules look at, in the tree's order, a folder
/// before its contents: hidden entries are left out, packages are visited and not entered. Paths
/// begin with `folder`, as it is spelled.
void visitVisible(const std::vector<TreeEntry>& entries, const std::string& folder,
                  const std::function<void(const std::string& path, const TreeEntry&)>& visit);

/// Whether the entry's name begins with a dot.
[[nodiscard]] bool isHidden(const TreeEntry& entry);

/// The bytes that a copy of the entry moves: the sizes of all regular files in it, hidden ones too,
/// and a file with several names in it only once.
[[nodiscard]] std::uint64_t bytesOf(const TreeEntry& entry);

}  // namespace installer
