#include "tools/installerctl/output/ProgressBar.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace installer {

namespace {

constexpr int width = 30;
constexpr double megabyte = 1e6;

std::string rounded(double number) {
    return std::to_string(std::lround(number));
}

}  // namespace

ProgressBar::ProgressBar(std::string what, std::uint64_t bytes, LiveLine::Place place)
    : what_(std::move(what)), bytes_(bytes), line_(std::move(place)) {}

void ProgressBar::add(std::uint64_t bytes) {
    done_ += bytes;
    if (bytes_ > 0) setFraction(static_cast<double>(done_) / static_cast<double>(bytes_));
}

void ProgressBar::setFraction(double fraction) {
    if (line_.isDue()) line_.show(textAt(std::clamp(fraction, 0.0, 1.0)));
}

std::string ProgressBar::textAt(double fraction) const {
    const auto filled = static_cast<std::size_t>(std::lround(fraction * width));
    const double seconds = line_.seconds();
    std::string text = what_ + " [" + std::string(filled, '#') +
                       std::string(static_cast<std::size_t>(width) - filled, ' ') + "] " +
                       rounded(fraction * 100) + " %";
    if (bytes_ > 0) {
        text +=
            ", " + rounded(fraction * static_cast<double>(bytes_) / seconds / megabyte) + " MB/s";
    }
    if (fraction > 0) text += ", " + rounded(seconds * (1 - fraction) / fraction) + " s left";
    return text;
}

}  // namespace installer
