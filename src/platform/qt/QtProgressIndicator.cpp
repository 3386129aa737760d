#include "platform/qt/QtProgressIndicator.h"

#include <QCoreApplication>
#include <QScopedValueRollback>
#include <algorithm>
#include <cmath>

namespace installer {

namespace {

constexpr int wholeBar = 10'000;
constexpr qint64 millisecondsPerFrame = 16;

/// Whoever is told of progress is in the middle of its work, so nothing may happen but painting.
void repaintOnly() {
    static bool isRepainting = false;
    if (isRepainting) return;
    const QScopedValueRollback<bool> repainting(isRepainting, true);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                    QEventLoop::ExcludeSocketNotifiers |
                                    QEventLoop::X11ExcludeTimers);
}

}  // namespace

QtProgressIndicator::QtProgressIndicator(QProgressBar* bar) : bar_(bar) {
    bar_->setRange(0, wholeBar);
}

void QtProgressIndicator::setFraction(double fraction) {
    if (!bar_) return;
    bar_->setValue(static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * wholeBar)));
    if (sinceRepaint_.isValid() && !sinceRepaint_.hasExpired(millisecondsPerFrame)) return;
    repaintOnly();
    sinceRepaint_.start();
}

}  // namespace installer
