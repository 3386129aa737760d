#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "install/run/RemainingTime.h"
#include "ports/ProgressSink.h"

namespace installer {

class Clock;
class ProgressIndicator;

/// What can be said of a run while it goes on.
struct ProgressReport {
    std::size_t item = 0;  ///< the number of the current item, from 1; 0 before the first
    std::size_t items = 0;
    std::uint64_t itemBytes = 0;  ///< of the current item, those that are copied
    std::uint64_t itemTotal = 0;  ///< and all of them
    std::optional<std::chrono::seconds> timeLeft = {};  ///< nullopt until it is known
    /// The file that is copied within an item that takes a second or longer; empty for others.
    std::string file = {};
};

/// Turns the bytes of a run's copies into the fraction of the run that is done. Each item has a
/// budget, the bytes that its copy should move, and never takes more or less than it: an item that
/// is copied a second time, by the administrator, or is not copied after all, moves the fraction
/// neither back nor beyond its end.
class InstallProgress : public ProgressSink {
  public:
    /// Both outlive this object.
    InstallProgress(ProgressIndicator& indicator, const Clock& clock)
        : indicator_(indicator), clock_(clock) {}

    /// Calls the handler when the report has changed, ten times a second at most. The handler must
    /// be as short as a sink.
    void onReport(std::function<void()> handler) { reportChanged_ = std::move(handler); }
    [[nodiscard]] ProgressReport report() const;

    /// A run begins with so many items, whose budgets add up to that. Shows an empty fraction.
    void begin(std::uint64_t totalBytes, std::size_t items);

    /// The next item begins, with that budget; the one before it is over.
    void beginItem(std::uint64_t bytes);
    void bytesCopied(std::uint64_t bytes) override;
    void fileBegins(const std::string& name) override;
    void endItem();

    /// Everything is done, whatever the items' budgets were.
    void complete();

  private:
    void show();
    void tell();

    ProgressIndicator& indicator_;
    const Clock& clock_;
    std::function<void()> reportChanged_;
    std::optional<std::chrono::nanoseconds> lastTold_;
    RemainingTime remaining_;
    std::size_t item_ = 0;
    std::size_t items_ = 0;
    std::uint64_t totalBytes_ = 0;
    std::uint64_t endedItemsBytes_ = 0;
    std::uint64_t itemBytes_ = 0;
    std::uint64_t itemBudget_ = 0;
    double fraction_ = 0;
    std::chrono::nanoseconds itemBegan_{};
    std::string file_;
};

}  // namespace installer
