#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <system_error>

#include "privileged/copies/Workers.h"

namespace installer {

/// Pieces of one job that workers do, and that can fail. The destructor waits for their end.
class PieceGroup {
  public:
    using Piece = std::function<std::error_code()>;

    explicit PieceGroup(Workers& workers) : workers_(workers) {}
    ~PieceGroup() { static_cast<void>(finish({})); }
    PieceGroup(const PieceGroup&) = delete;
    PieceGroup& operator=(const PieceGroup&) = delete;

    /// Hands over a piece, or first works at others on this thread while many are under way.
    /// `whileWaiting`, when one is given, is called several times a second meanwhile.
    void add(Piece piece, const std::function<void()>& whileWaiting);

    /// Waits for the end of all, and gives the first failure.
    [[nodiscard]] std::error_code finish(const std::function<void()>& whileWaiting);

    [[nodiscard]] bool hasFailed();

  private:
    void ended(std::error_code error);
    void waitForFewerThan(std::size_t count, const std::function<void()>& whileWaiting);

    Workers& workers_;
    std::mutex mutex_;
    std::condition_variable change_;
    std::size_t underWay_ = 0;
    std::error_code firstError_;
};

}  // namespace installer
