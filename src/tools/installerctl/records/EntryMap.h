#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "tools/installerctl/records/EntryRecord.h"

namespace installer {

/// Entries of a disk by their paths.
class EntryMap {
  public:
    /// What a path may hold: one record, or more than one while it is not certain which.
    using Alternatives = std::vector<EntryRecord>;
    using Map = std::map<std::string, Alternatives>;

    /// Puts the records, of a tree whose top is the first, at another place: what was there, and
    /// below, is forgotten, as a copy replaces it.
    void replaceTree(const std::string& top, std::span<const EntryRecord> records);

    /// Adds a record beside those that the path has already.
    void add(EntryRecord record);

    /// The records of the entry at the path and of everything in it, in the order of the paths.
    [[nodiscard]] std::vector<const Alternatives*> tree(const std::string& top) const;

    [[nodiscard]] const Map& all() const { return map_; }
    [[nodiscard]] const Alternatives* at(const std::string& path) const;
    /// Whether the path has a record like this one.
    [[nodiscard]] bool knows(const EntryRecord& record) const;
    /// Whether the path has a record, or lies in a folder that has one.
    [[nodiscard]] bool covers(const std::string& path) const;

  private:
    Map map_;
};

}  // namespace installer
