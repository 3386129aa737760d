#pragma once

#include <cstdint>

#include "ports/ProgressSink.h"

namespace installer {

class ProgressIndicator;

/// Turns the bytes of a run's copies into the fraction of the run that is done. Each item has a
/// budget, the bytes that its copy should move, and never takes more or less than it: an item that
/// is copied a second time, by the administrator, or is not copied after all, moves the fraction
/// neither back nor beyond its end.
class InstallProgress : public ProgressSink {
  public:
    /// The indicator outlives this object.
    explicit InstallProgress(ProgressIndicator& indicator) : indicator_(indicator) {}

    /// A run begins whose items' budgets add up to that. Shows an empty fraction.
    void begin(std::uint64_t totalBytes);

    /// The next item begins, with that budget; the one before it is over.
    void beginItem(std::uint64_t bytes);
    void bytesCopied(std::uint64_t bytes) override;
    void endItem();

    /// Everything is done, whatever the items' budgets were.
    void complete();

  private:
    void show();

    ProgressIndicator& indicator_;
    std::uint64_t totalBytes_ = 0;
    std::uint64_t endedItemsBytes_ = 0;
    std::uint64_t itemBytes_ = 0;
    std::uint64_t itemBudget_ = 0;
    double fraction_ = 0;
};

}  // namespace installer
