#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <chrono>

#include <gtest/gtest.h>

#include "qt/window/WindowClock.h"

namespace {

using namespace installer;

constexpr std::chrono::milliseconds longWait(120);
constexpr std::chrono::milliseconds shortWait(1);

QWidgetList shownWindows() {
    QWidgetList shown = QApplication::topLevelWidgets();
    shown.removeIf([](const QWidget* widget) { return !widget->isVisible(); });
    return shown;
}

TEST(WindowClock, ALongWaitShowsAWindowWithTheApplicationsName) {
    WindowClock clock;
    clock.sleep(longWait);
    const QWidgetList shown = shownWindows();
    ASSERT_EQ(shown.size(), 1);
    const QString name = QGuiApplication::applicationDisplayName();
    EXPECT_EQ(shown.front()->windowTitle(), name);
    const auto labels = shown.front()->findChildren<QLabel*>();
    EXPECT_TRUE(std::ranges::any_of(labels, [&](QLabel* label) { return label->text() == name; }));
    EXPECT_TRUE(std::ranges::all_of(labels, [&](QLabel* label) {
        return label->text() == name || label->accessibleName() == name;
    }));
}

TEST(WindowClock, EveryWaitLastsAsLongAsAsked) {
    WindowClock clock;
    for (const auto wait : {shortWait, longWait, longWait, shortWait}) {
        const auto before = clock.now();
        clock.sleep(wait);
        EXPECT_GE(clock.now() - before, wait);
    }
}

TEST(WindowClock, AShortWaitShowsNothing) {
    WindowClock clock;
    clock.sleep(shortWait);
    EXPECT_TRUE(shownWindows().isEmpty());
}

TEST(WindowClock, AWaitBesideAShownWindowShowsNoOther) {
    WindowClock clock;
    QWidget window;
    window.show();
    clock.sleep(longWait);
    EXPECT_EQ(shownWindows(), QWidgetList{&window});
}

TEST(WindowClock, TheWindowGoesBeforeAnotherIsShown) {
    WindowClock clock;
    clock.sleep(longWait);
    QWidget window;
    window.show();
    EXPECT_EQ(shownWindows(), QWidgetList{&window});
    clock.sleep(longWait);
    EXPECT_EQ(shownWindows(), QWidgetList{&window});
}

TEST(WindowClock, NothingIsLeftOfTheWindowInTheLoopThatFollows) {
    WindowClock clock;
    clock.sleep(longWait);
    QWidget window;
    window.show();
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec();
    EXPECT_EQ(QApplication::topLevelWidgets(), QWidgetList{&window});
}

TEST(WindowClock, TheWindowGoesWithTheClock) {
    {
        WindowClock clock;
        clock.sleep(longWait);
    }
    EXPECT_TRUE(shownWindows().isEmpty());
}

TEST(WindowClock, ClosingTheWindowDoesNotEndTheApplicationOrTheWait) {
    WindowClock clock;
    clock.sleep(longWait);
    ASSERT_EQ(shownWindows().size(), 1);
    EXPECT_FALSE(shownWindows().front()->close());
    EXPECT_EQ(shownWindows().size(), 1);
}

TEST(WindowClock, TimersRunWhileTheWindowIsShown) {
    WindowClock clock;
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&ticks] { ++ticks; });
    timer.start(0);
    clock.sleep(longWait);
    EXPECT_GT(ticks, 0);
}

}  // namespace
