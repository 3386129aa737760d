#include "linux/files/CopyThreads.h"

#include <algorithm>
#include <utility>

#include <sched.h>
#include <signal.h>

namespace installer {

namespace {

/// While this object lives, threads that are started block every signal: one that arrives is for
/// the thread of the core, which may hold it back.
class NoSignalsForNewThreads {
  public:
    NoSignalsForNewThreads() {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~NoSignalsForNewThreads() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    NoSignalsForNewThreads(const NoSignalsForNewThreads&) = delete;
    NoSignalsForNewThreads& operator=(const NoSignalsForNewThreads&) = delete;

  private:
    sigset_t before_{};
};

}  // namespace

unsigned CopyThreads::usualCount() {
    constexpr int most = 3;
    cpu_set_t processors;
    CPU_ZERO(&processors);
    if (::sched_getaffinity(0, sizeof processors, &processors) != 0) return 0;
    return static_cast<unsigned>(std::clamp(CPU_COUNT(&processors) - 1, 0, most));
}

CopyThreads::~CopyThreads() {
    {
        const std::scoped_lock guard(mutex_);
        isEnding_ = true;
    }
    change_.notify_all();
    for (std::thread& thread : threads_) thread.join();
}

void CopyThreads::add(std::function<void()> piece) {
    if (threads_.empty()) start();
    bool someoneWaits = false;
    {
        const std::scoped_lock guard(mutex_);
        pieces_.push_back(std::move(piece));
        someoneWaits = idle_ > 0;
    }
    if (someoneWaits) change_.notify_one();
}

bool CopyThreads::runOne() {
    std::function<void()> piece;
    {
        const std::scoped_lock guard(mutex_);
        if (pieces_.empty()) return false;
        piece = std::move(pieces_.front());
        pieces_.pop_front();
    }
    piece();
    return true;
}

void CopyThreads::start() {
    const NoSignalsForNewThreads guard;
    // Where no thread can be made, whoever hands pieces over does them all.
    try {
        while (threads_.size() < count_) threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        count_ = static_cast<unsigned>(threads_.size());
    }
}

void CopyThreads::work() {
    std::unique_lock guard(mutex_);
    for (;;) {
        ++idle_;
        change_.wait(guard, [this] { return isEnding_ || !pieces_.empty(); });
        --idle_;
        if (isEnding_) return;
        const std::function<void()> piece = std::move(pieces_.front());
        pieces_.pop_front();
        guard.unlock();
        piece();
        guard.lock();
    }
}

}  // namespace installer
