#include "tools/terminal/LiveLine.h"

#include <iostream>
#include <utility>

#include <unistd.h>

namespace installer {

namespace {

constexpr auto beforeTheFirst = std::chrono::milliseconds(500);
constexpr auto betweenTwo = std::chrono::milliseconds(100);
constexpr const char* toItsStart = "\r";
constexpr const char* eraseTheRest = "\033[K";

}  // namespace

LiveLine::Place LiveLine::standardError() {
    return {::isatty(STDERR_FILENO) == 1 ? &std::cerr : nullptr, Clock::now};
}

LiveLine::LiveLine(Place place)
    : place_(std::move(place)), start_(place_.now()), lastShown_(start_) {}

LiveLine::~LiveLine() {
    if (isShown_) *place_.terminal << toItsStart << eraseTheRest << std::flush;
}

bool LiveLine::isDue() const {
    if (place_.terminal == nullptr) return false;
    const auto now = place_.now();
    return now - start_ >= beforeTheFirst && (!isShown_ || now - lastShown_ >= betweenTwo);
}

void LiveLine::show(const std::string& text) {
    isShown_ = true;
    lastShown_ = place_.now();
    *place_.terminal << toItsStart << text << eraseTheRest << std::flush;
}

double LiveLine::seconds() const {
    return std::chrono::duration<double>(place_.now() - start_).count();
}

}  // namespace installer
