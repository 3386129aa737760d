#include "tools/installerctl/output/ProgressBar.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <utility>

#include <unistd.h>

namespace installer {

namespace {

constexpr auto beforeTheFirst = std::chrono::milliseconds(500);
constexpr auto betweenTwo = std::chrono::milliseconds(100);
constexpr int width = 30;
constexpr double megabyte = 1e6;

}  // namespace

ProgressBar::Place ProgressBar::standardError() {
    return {::isatty(STDERR_FILENO) == 1 ? &std::cerr : nullptr, Clock::now};
}

ProgressBar::ProgressBar(std::string what, std::uint64_t bytes, Place place)
    : what_(std::move(what)),
      bytes_(bytes),
      place_(std::move(place)),
      start_(place_.now()),
      lastShown_(start_) {}

void ProgressBar::add(std::uint64_t bytes) {
    done_ += bytes;
    if (bytes_ > 0) setFraction(static_cast<double>(done_) / static_cast<double>(bytes_));
}

void ProgressBar::setFraction(double fraction) {
    if (place_.terminal == nullptr) return;
    const auto now = place_.now();
    if (now - start_ < beforeTheFirst || (isShown_ && now - lastShown_ < betweenTwo)) return;
    show(std::clamp(fraction, 0.0, 1.0), now);
}

void ProgressBar::show(double fraction, Clock::time_point now) {
    std::ostream& terminal = *place_.terminal;
    isShown_ = true;
    lastShown_ = now;
    const int filled = static_cast<int>(std::lround(fraction * width));
    const double seconds = std::chrono::duration<double>(now - start_).count();
    terminal << '\r' << what_ << " [" << std::string(static_cast<std::size_t>(filled), '#')
             << std::string(static_cast<std::size_t>(width - filled), ' ') << "] "
             << std::lround(fraction * 100) << " %";
    if (bytes_ > 0) {
        const double rate = fraction * static_cast<double>(bytes_) / seconds / megabyte;
        terminal << ", " << std::lround(rate) << " MB/s";
    }
    if (fraction > 0) {
        terminal << ", " << std::lround(seconds * (1 - fraction) / fraction) << " s left";
    }
    terminal << "\033[K" << std::flush;
}

void ProgressBar::clear() {
    if (isShown_) *place_.terminal << "\r\033[K" << std::flush;
    isShown_ = false;
}

}  // namespace installer
