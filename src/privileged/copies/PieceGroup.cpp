#include "privileged/copies/PieceGroup.h"

#include <utility>

#include "privileged/system/AwaitReadable.h"

namespace installer {

namespace {

/// Each holds two descriptors open.
constexpr std::size_t mostUnderWay = 32;

}  // namespace

void PieceGroup::add(Piece piece, const std::function<void()>& whileWaiting) {
    waitForFewerThan(mostUnderWay, whileWaiting);
    {
        const std::scoped_lock guard(mutex_);
        ++underWay_;
    }
    workers_.add([this, work = std::move(piece)] { ended(work()); });
}

std::error_code PieceGroup::finish(const std::function<void()>& whileWaiting) {
    waitForFewerThan(1, whileWaiting);
    const std::scoped_lock guard(mutex_);
    return firstError_;
}

bool PieceGroup::hasFailed() {
    const std::scoped_lock guard(mutex_);
    return static_cast<bool>(firstError_);
}

void PieceGroup::ended(std::error_code error) {
    // Notified under the lock: the group may be gone as soon as it is released.
    const std::scoped_lock guard(mutex_);
    if (error && !firstError_) firstError_ = error;
    --underWay_;
    change_.notify_one();
}

void PieceGroup::waitForFewerThan(std::size_t count, const std::function<void()>& whileWaiting) {
    for (;;) {
        {
            const std::scoped_lock guard(mutex_);
            if (underWay_ < count) return;
        }
        if (whileWaiting) whileWaiting();
        if (workers_.runOne()) continue;
        std::unique_lock guard(mutex_);
        change_.wait_for(guard, wakeInterval, [&] { return underWay_ < count; });
    }
}

}  // namespace installer
