#include "install/run/RemainingTime.h"

#include <algorithm>
#include <cstdint>

namespace installer {

namespace {

using std::chrono::seconds;

constexpr RemainingTime::Time longestStep = seconds(1);
constexpr RemainingTime::Time enoughWork = seconds(2);
constexpr double enoughDone = 0.01;

constexpr seconds minuteAndAHalf{90};
constexpr seconds tenSeconds{10};
constexpr seconds fewSeconds{5};

/// What a shown time is a multiple of.
seconds unitOf(RemainingTime::Time time) {
    if (time > minuteAndAHalf) return std::chrono::minutes(1);
    return time > fewSeconds ? tenSeconds : fewSeconds;
}

seconds roundedUp(RemainingTime::Time time) {
    const seconds unit = unitOf(time);
    const auto units = (time + unit - RemainingTime::Time(1)) / unit;
    return std::max<std::int64_t>(units, 1) * unit;
}

}  // namespace

void RemainingTime::begin() {
    *this = RemainingTime();
}

void RemainingTime::update(double fraction, Time now) {
    const Time step = last_ ? std::clamp(now - *last_, Time(0), longestStep) : Time(0);
    last_ = now;
    worked_ += step;
    if (worked_ < enoughWork || fraction < enoughDone) return;
    const Time estimate(static_cast<Time::rep>(static_cast<double>(worked_.count()) *
                                               (1 - std::min(fraction, 1.0)) / fraction));
    // It may fall at once, and grows no faster than the time passes.
    left_ = left_ ? std::min(estimate, *left_ + step) : estimate;
    show(*left_);
}

/// A time that only just exceeds what is shown changes nothing, so that the text does not flicker.
void RemainingTime::show(Time left) {
    const bool isMore = shown_ && left > *shown_;
    if (isMore && left < *shown_ + unitOf(*shown_) / 2) return;
    shown_ = roundedUp(left);
}

}  // namespace installer
