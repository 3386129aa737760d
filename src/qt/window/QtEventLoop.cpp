#include "qt/window/QtEventLoop.h"

#include <QAbstractEventDispatcher>
#include <QEventLoop>
#include <QPointer>
#include <QSocketNotifier>
#include <utility>

#include "qt/controls/RepaintTurn.h"

namespace installer {

namespace {

/// One turn of the toolkit's loop handles the events that are there at its start. Events that
/// result from them, such as painting after an input, need further turns. A timer without delay
/// always causes a new event, so the number of turns is limited.
constexpr int mostTurns = 100;

}  // namespace

void QtEventLoop::runUntilNow() {
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    for (int turn = 0; turn < mostTurns; ++turn)
        if (!dispatcher->processEvents(QEventLoop::AllEvents)) return;
}

bool QtEventLoop::runOnce() {
    QAbstractEventDispatcher::instance()->processEvents(QEventLoop::WaitForMoreEvents);
    return true;
}

Subscription QtEventLoop::watch(int descriptor, std::function<void()> whenReadable) {
    auto* notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, &notifiers_);
    QObject::connect(notifier, &QSocketNotifier::activated,
                     [whenReadable = std::move(whenReadable)] {
                         // The descriptor stays readable, so the next turn tells of it.
                         if (isRepaintTurn()) return;
                         // A callback that cancels its own watch lives on until it returns.
                         const std::function<void()> alive = whenReadable;
                         alive();
                     });
    return Subscription([watched = QPointer<QSocketNotifier>(notifier)] {
        if (!watched) return;
        // The descriptor may be closed next, while this may run within the notifier's own signal.
        watched->setEnabled(false);
        watched->deleteLater();
    });
}

}  // namespace installer
