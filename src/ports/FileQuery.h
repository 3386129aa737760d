#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace installer {

/// An entry that a query has found.
struct FoundFile {
    std::string name;  ///< its path's last component
    std::string path;  ///< below its scope's path as that was given, but with single separators
};

/// A search for entries by name. It is prepared, started, and gathers its results while the event
/// loop turns; it can be started again when it was stopped. Destroying it stops it.
class FileQuery {
  public:
    virtual ~FileQuery() = default;

    /// What entries are to be called: in `pattern`, a name's "*" stands for any characters and its
    /// "?" for any single one. It is a value: nothing else in it has a meaning. So a query for a
    /// name that holds one of the two finds others as well, and so may a platform that takes
    /// letters of either case for the same; who wants one name looks at the results' own.
    virtual void setNameLike(const std::string& pattern) = 0;

    /// The folders below which the entries lie, at whatever depth, hidden ones and those in
    /// packages too. The folders themselves are never found. No link is followed but those in the
    /// paths given here. A path that is relative or no folder finds nothing.
    virtual void setSearchScopes(const std::vector<std::string>& folders) = 0;

    /// Forgets the results and begins anew. What cannot be read is passed over; a search that
    /// cannot begin is over at once, without results.
    virtual void start() = 0;

    /// Whether more results may come when the event loop turns.
    [[nodiscard]] virtual bool isGathering() const = 0;

    /// Ends the search, wherever it is. The results stay as they are until the next start,
    /// whatever happens to the entries meanwhile.
    virtual void stop() = 0;

    /// The results so far. `result` takes an index below their number.
    [[nodiscard]] virtual std::size_t resultCount() const = 0;
    [[nodiscard]] virtual FoundFile result(std::size_t index) const = 0;
};

/// Makes queries.
class FileQueries {
  public:
    virtual ~FileQueries() = default;
    [[nodiscard]] virtual std::unique_ptr<FileQuery> create() = 0;
};

}  // namespace installer
