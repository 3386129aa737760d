#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/observers/Subscription.h"
#include "linux/files/FileSearch.h"
#include "ports/DescriptorWatcher.h"
#include "ports/FileQuery.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

/// A query that searches the folder trees themselves, a portion in each turn of the event loop, so
/// that a window stays alive meanwhile. Letter case counts.
class LinuxFileQuery : public FileQuery {
  public:
    LinuxFileQuery(DescriptorWatcher& watcher, std::size_t memoryLimit)
        : watcher_(watcher), memoryLimit_(memoryLimit) {}

    void setNameLike(const std::string& pattern) override { pattern_ = pattern; }
    void setSearchScopes(const std::vector<std::string>& folders) override { scopes_ = folders; }
    void start() override;
    [[nodiscard]] bool isGathering() const override { return search_.has_value(); }
    void stop() override;
    [[nodiscard]] std::size_t resultCount() const override { return found_.size(); }
    [[nodiscard]] FoundFile result(std::size_t index) const override { return found_[index]; }

  private:
    void gather();

    DescriptorWatcher& watcher_;
    std::size_t memoryLimit_;
    std::string pattern_;
    std::vector<std::string> scopes_;
    std::vector<FoundFile> found_;
    std::optional<FileSearch> search_;  ///< while it is going on
    FileDescriptor alwaysReadable_;
    Subscription turns_;  ///< destroyed before what it watches
};

/// Makes queries for one event loop.
class LinuxFileQueries : public FileQueries {
  public:
    /// Enough for a quarter of a million copies, and little of the machine's memory.
    static constexpr std::size_t defaultMemoryLimit = std::size_t{64} << 20U;

    /// The watcher outlives this object and its queries.
    explicit LinuxFileQueries(DescriptorWatcher& watcher,
                              std::size_t memoryLimit = defaultMemoryLimit)
        : watcher_(watcher), memoryLimit_(memoryLimit) {}

    [[nodiscard]] std::unique_ptr<FileQuery> create() override;

  private:
    DescriptorWatcher& watcher_;
    std::size_t memoryLimit_;
};

}  // namespace installer
