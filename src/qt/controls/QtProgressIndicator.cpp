#include "qt/controls/QtProgressIndicator.h"

#include <QLocale>
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
    // The same digits as in the texts beside it.
    bar_->setLocale(QLocale::c());
}

void QtProgressIndicator::setFraction(double fraction) {
    if (!bar_) return;
    bar_->setValue(static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * wholeBar)));
    if (sinceRepaint_.isValid() && !sinceRepaint_.hasExpired(millisecondsPerFrame)) return;
    // The caller is in the middle of a copy: only painting may happen.
    runRepaintTurn();
    sinceRepaint_.start();
}

}  // namespace installer
