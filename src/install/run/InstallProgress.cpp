#include "install/run/InstallProgress.h"

#include <algorithm>

#include "ports/Clock.h"
#include "ports/window/View.h"

namespace installer {

namespace {

/// From then on people wonder what is going on. The files of a shorter item would only flicker.
constexpr std::chrono::seconds longItem{1};

}  // namespace

ProgressReport InstallProgress::report() const {
    return {.item = item_,
            .items = items_,
            .itemBytes = itemBytes_,
            .itemTotal = itemBudget_,
            .timeLeft = remaining_.shown(),
            .file = clock_.now() - itemBegan_ < longItem ? "" : file_};
}

void InstallProgress::begin(std::uint64_t totalBytes, std::size_t items) {
    item_ = 0;
    items_ = items;
    lastTold_.reset();
    remaining_.begin();
    totalBytes_ = totalBytes;
    endedItemsBytes_ = 0;
    itemBytes_ = 0;
    itemBudget_ = 0;
    fraction_ = 0;
    show();
}

void InstallProgress::beginItem(std::uint64_t bytes) {
    endItem();
    itemBudget_ = bytes;
    itemBegan_ = clock_.now();
    // What is installed beside the plan's items is counted to the last one.
    item_ = std::min(item_ + 1, items_);
    tell();
}

void InstallProgress::bytesCopied(std::uint64_t bytes) {
    itemBytes_ += std::min(bytes, itemBudget_ - itemBytes_);
    show();
}

void InstallProgress::fileBegins(const std::string& name) {
    file_ = name;
    tell();
}

void InstallProgress::endItem() {
    file_.clear();
    endedItemsBytes_ += itemBudget_;
    itemBytes_ = 0;
    itemBudget_ = 0;
    show();
}

void InstallProgress::complete() {
    fraction_ = 1;
    show();
}

void InstallProgress::show() {
    if (totalBytes_ > 0) {
        // The payload may have changed since its size was taken.
        const std::uint64_t done = std::min(endedItemsBytes_ + itemBytes_, totalBytes_);
        const double now = static_cast<double>(done) / static_cast<double>(totalBytes_);
        if (now > fraction_) {
            fraction_ = now;
            remaining_.update(fraction_, clock_.now());
            tell();
        }
    }
    indicator_.setFraction(fraction_);
}

void InstallProgress::tell() {
    if (!reportChanged_) return;
    constexpr auto shortestTime = std::chrono::milliseconds(100);
    const std::chrono::nanoseconds now = clock_.now();
    if (lastTold_ && now - *lastTold_ < shortestTime) return;
    lastTold_ = now;
    reportChanged_();
}

}  // namespace installer
