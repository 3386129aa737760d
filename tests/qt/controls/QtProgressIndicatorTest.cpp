#include <QApplication>
#include <QLocale>
#include <QPaintEvent>
#include <QTimer>
#include <array>
#include <functional>

#include <gtest/gtest.h>
#include <unistd.h>

#include "qt/controls/QtProgressIndicator.h"
#include "qt/window/QtEventLoop.h"

namespace {

using namespace installer;

class Painted : public QWidget {
  public:
    int paints = 0;
    std::function<void()> whenPainted;

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        ++paints;
        if (whenPainted) whenPainted();
    }
};

class QtProgressIndicatorTest : public testing::Test {
  protected:
    QProgressBar bar;
    QtProgressIndicator indicator{&bar};
};

TEST_F(QtProgressIndicatorTest, ShowsTheFraction) {
    EXPECT_EQ(bar.maximum(), 10'000);
    indicator.setFraction(0.25);
    EXPECT_EQ(bar.value(), 2'500);
    indicator.setFraction(1);
    EXPECT_EQ(bar.value(), 10'000);
}

TEST_F(QtProgressIndicatorTest, AFractionOutsideTheBarStaysWithinIt) {
    indicator.setFraction(-3);
    EXPECT_EQ(bar.value(), 0);
    indicator.setFraction(7);
    EXPECT_EQ(bar.value(), 10'000);
}

TEST(QtProgressIndicatorOfALanguage, ThePercentageHasTheDigitsOfTheTextsBesideIt) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    QProgressBar bar;
    QtProgressIndicator indicator(&bar);
    indicator.setFraction(0.25);
    EXPECT_EQ(bar.text(), "25%");
    QLocale::setDefault(before);
}

TEST_F(QtProgressIndicatorTest, PaintsWhatIsDueAndHandlesNothingElse) {
    Painted window;
    window.resize(100, 100);
    window.show();
    QCoreApplication::processEvents();
    ASSERT_TRUE(window.isVisible());

    int timers = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++timers; });
    timer.start(0);
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    ASSERT_EQ(::write(pipe[1], "x", 1), 1);
    int notices = 0;
    QtEventLoop loop;
    const Subscription watch = loop.watch(pipe[0], [&] {
        ++notices;
        char byte = 0;
        EXPECT_EQ(::read(pipe[0], &byte, 1), 1);
    });

    const int before = window.paints;
    window.update();
    indicator.setFraction(0.5);
    EXPECT_EQ(window.paints, before + 1);
    EXPECT_EQ(timers, 0);
    EXPECT_EQ(notices, 0);

    QCoreApplication::processEvents();
    EXPECT_GT(timers, 0);
    EXPECT_EQ(notices, 1);
    ::close(pipe[0]);
    ::close(pipe[1]);
}

TEST_F(QtProgressIndicatorTest, MayBeToldOfProgressWhileItRepaints) {
    Painted window;
    QProgressBar otherBar;
    QtProgressIndicator other(&otherBar);
    window.whenPainted = [&] { other.setFraction(0.75); };
    window.show();
    QCoreApplication::processEvents();
    window.update();
    const int before = window.paints;
    indicator.setFraction(0.5);
    EXPECT_EQ(window.paints, before + 1);
    EXPECT_EQ(otherBar.value(), 7'500);
}

TEST_F(QtProgressIndicatorTest, RepaintsAtMostOncePerFrame) {
    Painted window;
    window.show();
    QCoreApplication::processEvents();
    int told = 0;
    const int before = window.paints;
    QElapsedTimer time;
    time.start();
    while (!time.hasExpired(50)) {
        window.update();
        indicator.setFraction(0.5);
        ++told;
    }
    const int repaints = window.paints - before;
    EXPECT_GE(repaints, 1);
    EXPECT_LE(repaints, 1 + time.elapsed() / 16);
    EXPECT_GT(told, repaints);
}

}  // namespace
