#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "privileged/copies/Workers.h"

namespace installer {

/// Threads that fill copies. They start with the first piece and end with this object; pieces that
/// nobody has begun by then are not done.
class CopyThreads : public Workers {
  public:
    /// One less than the processors that this process may use, because the thread that hands pieces
    /// over works too; at most three.
    [[nodiscard]] static unsigned usualCount();

    explicit CopyThreads(unsigned count) : count_(count) {}
    ~CopyThreads() override;
    CopyThreads(const CopyThreads&) = delete;
    CopyThreads& operator=(const CopyThreads&) = delete;

    [[nodiscard]] unsigned count() const { return count_; }

    void add(std::function<void()> piece) override;
    [[nodiscard]] bool runOne() override;

  private:
    void start();
    void work();

    unsigned count_;
    std::vector<std::thread> threads_;
    std::mutex mutex_;
    std::condition_variable change_;
    std::deque<std::function<void()>> pieces_;
    unsigned idle_ = 0;  ///< threads that wait for a piece
    bool isEnding_ = false;
};

}  // namespace installer
