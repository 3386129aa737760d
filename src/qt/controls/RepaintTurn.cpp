#include "qt/controls/RepaintTurn.h"

#include <QCoreApplication>
#include <QScopedValueRollback>

namespace installer {

namespace {

bool isRunning = false;

}  // namespace

void runRepaintTurn() {
    if (isRunning) return;
    const QScopedValueRollback<bool> running(isRunning, true);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                    QEventLoop::ExcludeSocketNotifiers |
                                    QEventLoop::X11ExcludeTimers);
}

bool isRepaintTurn() {
    return isRunning;
}

}  // namespace installer
