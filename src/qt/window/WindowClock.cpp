#include "qt/window/WindowClock.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <thread>

namespace installer {

namespace {

/// Shorter waits are not felt, and the window would only flash up.
constexpr std::chrono::milliseconds longestUnfelt(100);

bool isAnyWindowShown() {
    return std::ranges::any_of(QApplication::topLevelWidgets(),
                               [](const QWidget* widget) { return widget->isVisible(); });
}

}  // namespace

WindowClock::~WindowClock() {
    delete waiting_.data();
}

void WindowClock::sleep(std::chrono::microseconds duration) {
    const auto end = now() + duration;
    if (duration > longestUnfelt && !isAnyWindowShown()) {
        waiting_ = new WaitingWindow;
        waiting_->show();
    }
    if (waiting_ && waiting_->isVisible()) {
        QEventLoop loop;
        QTimer::singleShot(std::chrono::ceil<std::chrono::milliseconds>(duration), &loop,
                           &QEventLoop::quit);
        loop.exec(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
    }
    // Something else can end a loop before its time.
    std::this_thread::sleep_for(end - now());
}

std::chrono::nanoseconds WindowClock::now() const {
    return std::chrono::steady_clock::now().time_since_epoch();
}

}  // namespace installer
