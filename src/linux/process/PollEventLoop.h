#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "ports/DescriptorWatcher.h"
#include "ports/EventLoop.h"

namespace installer {

/// The event loop of a process without a window: descriptors and nothing else. Belongs to the
/// thread that made it. Handles may outlive it.
class PollEventLoop : public EventLoop, public DescriptorWatcher {
  public:
    /// With nothing watched it makes no system call.
    void runUntilNow() override;
    [[nodiscard]] bool runOnce() override;
    [[nodiscard]] Subscription watch(int descriptor, std::function<void()> whenReadable) override;

  private:
    struct Source {
        int descriptor = -1;
        std::function<void()> whenReadable;
    };
    /// By the order in which they were added, which is the order of their callbacks in a turn.
    struct Sources : std::map<std::uint64_t, Source> {
        std::uint64_t turns = 0;
    };

    void turn(int timeoutInMilliseconds);

    std::shared_ptr<Sources> sources_ = std::make_shared<Sources>();
    std::uint64_t lastSource_ = 0;
};

}  // namespace installer
