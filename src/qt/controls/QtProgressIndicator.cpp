#include "qt/controls/QtProgressIndicator.h"

#include <algorithm>
#include <cmath>

#include "qt/controls/RepaintTurn.h"

namespace installer {

namespace {

constexpr int wholeBar = 10'000;
constexpr qint64 millisecondsPerFrame = 16;

}  // namespace

QtProgressIndicator::QtProgressIndicator(QProgressBar* bar) : bar_(bar) {
    bar_->setRange(0, wholeBar);
}

void QtProgressIndicator::setFraction(double fraction) {
    if (!bar_) return;
    bar_->setValue(static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * wholeBar)));
    if (sinceRepaint_.isValid() && !sinceRepaint_.hasExpired(millisecondsPerFrame)) return;
    // Whoever is told of progress is in the middle of its work: nothing may happen but painting.
    runRepaintTurn();
    sinceRepaint_.start();
}

}  // namespace installer
