#include "install/run/InstallProgress.h"

#include <algorithm>

#include "ports/window/View.h"

namespace installer {

void InstallProgress::begin(std::uint64_t totalBytes) {
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
}

void InstallProgress::bytesCopied(std::uint64_t bytes) {
    itemBytes_ += std::min(bytes, itemBudget_ - itemBytes_);
    show();
}

void InstallProgress::endItem() {
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
        fraction_ =
            std::max(fraction_, static_cast<double>(done) / static_cast<double>(totalBytes_));
    }
    indicator_.setFraction(fraction_);
}

}  // namespace installer
