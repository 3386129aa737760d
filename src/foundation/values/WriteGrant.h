#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace installer {

/// What one run may change as root. The folders are what the administrator is shown and agrees to;
/// the destinations are the exact items of the run, each below one of the folders. Grants nothing
/// at first. Rules about paths as texts: nothing is looked up on the disk, and a path with "." or
/// ".." in it is of no use here.
class WriteGrant {
  public:
    using Texts = std::set<std::string, std::less<>>;

    /// Adds a folder that the run writes below; the root stands for the whole disk. A folder within
    /// another one is not kept. Passed over if it is not absolute.
    void addFolder(std::string_view folder);

    /// Adds an item that the run may replace. Passed over unless it lies below one of the folders.
    void addDestination(std::string_view path);

    /// Adds a name: entries of that name may be removed wherever they lie below the folders.
    void addRemovableName(std::string_view name);

    [[nodiscard]] const std::vector<std::string>& folders() const { return folders_; }
    [[nodiscard]] const Texts& destinations() const;
    [[nodiscard]] const Texts& removableNames() const { return removableNames_; }

    /// Whether the path is one of the destinations, or lies below one.
    [[nodiscard]] bool holds(std::string_view path) const;

    /// Whether a destination lies below the path.
    [[nodiscard]] bool leadsThrough(std::string_view path) const;

    /// Whether the path is held, or an entry below the folders with a name that may be removed.
    [[nodiscard]] bool mayRemove(std::string_view path) const;

    friend bool operator==(const WriteGrant& one, const WriteGrant& other);

  private:
    [[nodiscard]] bool isBelowFolders(std::string_view path) const;

    std::vector<std::string> folders_;  ///< in the order in which they came; none within another
    /// Copies share them until one of them gets another: a large product has 100,000. Null for
    /// none.
    std::shared_ptr<Texts> destinations_;
    Texts removableNames_;
};

}  // namespace installer
