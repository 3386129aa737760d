#pragma once

#include <array>
#include <cstdlib>
#include <functional>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

#include "foundation/observers/Subscription.h"
#include "ports/DescriptorWatcher.h"
#include "privileged/system/FileDescriptor.h"
#include "tests/ports/EventLoopContract.h"

namespace installer::test {

/// The world of an event loop that watches descriptors: what happens is a byte in a pipe.
template <class Loop>
class WatchedPipe : public EventLoopScene {
  public:
    WatchedPipe() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
        reading_.reset(ends[0]);
        writing_.reset(ends[1]);
    }
    ~WatchedPipe() override {
        if (writer_.joinable()) writer_.join();
    }

    EventLoop& loop() override { return loop_; }
    void addSource(std::function<void()> handler) override {
        watched_ = loop_.watch(reading_.get(), [this, handler = std::move(handler)] {
            char byte = 0;
            EXPECT_EQ(::read(reading_.get(), &byte, 1), 1);
            handler();
        });
    }
    void removeSource() override { watched_.cancel(); }
    void happen() override { EXPECT_EQ(::write(writing_.get(), "x", 1), 1); }
    void happenLater() override {
        writer_ = std::thread([this] { happen(); });
    }

  private:
    Loop loop_;
    FileDescriptor reading_;
    FileDescriptor writing_;
    std::thread writer_;
    Subscription watched_;  // goes before what it watches
};

template <class Scene>
std::unique_ptr<EventLoopScene> makeEventLoopScene() {
    return std::make_unique<Scene>();
}

}  // namespace installer::test
