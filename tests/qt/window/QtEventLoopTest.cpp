#include <QApplication>
#include <QPaintEvent>
#include <QTimer>
#include <QWidget>
#include <array>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "qt/window/QtEventLoop.h"

namespace {

using namespace installer;

class Pipe {
  public:
    Pipe() {
        if (::pipe2(ends_.data(), O_CLOEXEC) != 0) std::abort();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        closeWriting();
        ::close(ends_[0]);
    }
    [[nodiscard]] int reading() const { return ends_[0]; }
    void write() const { static_cast<void>(!::write(ends_[1], "x", 1)); }
    void read() const {
        char byte = 0;
        static_cast<void>(!::read(ends_[0], &byte, 1));
    }
    void closeWriting() {
        if (ends_[1] >= 0) ::close(ends_[1]);
        ends_[1] = -1;
    }

  private:
    std::array<int, 2> ends_{};
};

class QtEventLoopTest : public testing::Test {
  protected:
    /// A turn may be about something else, such as the toolkit's own timers.
    void turnUntil(const std::function<bool()>& happened) {
        while (!happened()) ASSERT_TRUE(loop.runOnce());
    }

    QtEventLoop loop;
};

TEST_F(QtEventLoopTest, RunUntilNowHandlesWhatIsThereAndDoesNotWait) {
    const Pipe pipe;
    int calls = 0;
    const Subscription watched = loop.watch(pipe.reading(), [&] {
        ++calls;
        pipe.read();
    });
    loop.runUntilNow();
    EXPECT_EQ(calls, 0);
    pipe.write();
    loop.runUntilNow();
    EXPECT_EQ(calls, 1);
}

TEST_F(QtEventLoopTest, WaitsForASource) {
    const Pipe pipe;
    int calls = 0;
    const Subscription watched = loop.watch(pipe.reading(), [&] {
        ++calls;
        pipe.read();
    });
    std::thread writer([&] { pipe.write(); });
    turnUntil([&] { return calls > 0; });
    EXPECT_EQ(calls, 1);
    writer.join();
}

TEST_F(QtEventLoopTest, TellsOfAClosedPeer) {
    Pipe pipe;
    int calls = 0;
    const Subscription watched = loop.watch(pipe.reading(), [&] { ++calls; });
    pipe.closeWriting();
    turnUntil([&] { return calls > 0; });
}

TEST_F(QtEventLoopTest, CallsAgainInTheNextTurnWhileThereIsSomethingLeftToRead) {
    const Pipe pipe;
    int calls = 0;
    const Subscription watched = loop.watch(pipe.reading(), [&] { ++calls; });
    pipe.write();
    turnUntil([&] { return calls == 3; });
}

TEST_F(QtEventLoopTest, IsNotHeldUpByWhatNobodyReads) {
    const Pipe pipe;
    int calls = 0;
    const Subscription watched = loop.watch(pipe.reading(), [&] { ++calls; });
    pipe.write();
    loop.runUntilNow();
    EXPECT_GE(calls, 1);
}

TEST_F(QtEventLoopTest, LetsASourceRemoveItself) {
    const Pipe pipe;
    Subscription watched;
    std::string seen;
    int calls = 0;
    watched = loop.watch(pipe.reading(), [&, text = std::string(100, 'x')] {
        ++calls;
        watched.cancel();
        loop.runUntilNow();
        seen = text;
    });
    pipe.write();
    turnUntil([&] { return calls > 0; });
    loop.runUntilNow();
    EXPECT_EQ(seen, std::string(100, 'x'));
    EXPECT_EQ(calls, 1);
}

TEST_F(QtEventLoopTest, DoesNotCallASourceThatAnotherOneRemovedInTheSameTurn) {
    const Pipe first;
    const Pipe second;
    int calls = 0;
    Subscription one;
    Subscription two;
    one = loop.watch(first.reading(), [&] {
        ++calls;
        two.cancel();
    });
    two = loop.watch(second.reading(), [&] {
        ++calls;
        one.cancel();
    });
    first.write();
    second.write();
    turnUntil([&] { return calls > 0; });
    EXPECT_EQ(calls, 1);
}

TEST_F(QtEventLoopTest, LetsADescriptorBeUsedAnewOnceItsHandleIsGone) {
    int calls = 0;
    std::optional<Pipe> first(std::in_place);
    const int descriptor = first->reading();
    std::optional<Subscription> watched = loop.watch(descriptor, [&] { FAIL(); });
    watched.reset();
    first.reset();
    const Pipe second;
    ASSERT_EQ(second.reading(), descriptor);
    const Subscription anew = loop.watch(descriptor, [&] { ++calls; });
    second.write();
    turnUntil([&] { return calls > 0; });
}

TEST_F(QtEventLoopTest, CanBeTurnedFromWithinACallback) {
    const Pipe outer;
    const Pipe inner;
    int calls = 0;
    const Subscription two = loop.watch(inner.reading(), [&] {
        inner.read();
        ++calls;
    });
    const Subscription one = loop.watch(outer.reading(), [&] {
        outer.read();
        inner.write();
        turnUntil([&] { return calls == 1; });
        inner.write();
        turnUntil([&] { return calls == 2; });
    });
    outer.write();
    turnUntil([&] { return calls == 2; });
}

TEST(QtEventLoop, MayBeGoneBeforeItsHandles) {
    std::optional<QtEventLoop> loop(std::in_place);
    const Pipe pipe;
    Subscription watched = loop->watch(pipe.reading(), [] {});
    loop.reset();
    watched.cancel();
}

class PaintCounter : public QWidget {
  public:
    int times = 0;

  protected:
    void paintEvent(QPaintEvent* /*event*/) override { ++times; }
};

TEST_F(QtEventLoopTest, RunUntilNowPaintsWhatChanged) {
    PaintCounter widget;
    widget.show();
    turnUntil([&] { return widget.times > 0; });
    loop.runUntilNow();
    const int before = widget.times;
    widget.update();
    EXPECT_EQ(widget.times, before);
    loop.runUntilNow();
    EXPECT_EQ(widget.times, before + 1);
}

TEST_F(QtEventLoopTest, RunUntilNowHandlesWhatTheHandledEventsLeadTo) {
    PaintCounter widget;
    widget.show();
    turnUntil([&] { return widget.times > 0; });
    loop.runUntilNow();
    const int before = widget.times;
    const Pipe pipe;
    const Subscription watched = loop.watch(pipe.reading(), [&] {
        pipe.read();
        widget.update();
    });
    pipe.write();
    loop.runUntilNow();
    EXPECT_EQ(widget.times, before + 1);
}

TEST_F(QtEventLoopTest, RunUntilNowReturnsThoughATimerNeverRunsDry) {
    QTimer timer;
    int calls = 0;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++calls; });
    timer.start(0);
    loop.runUntilNow();
    EXPECT_GE(calls, 1);
}

}  // namespace
