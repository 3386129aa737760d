#pragma once

#include <chrono>
#include <string>

#include "privileged/system/FileDescriptor.h"

namespace installer {

/// Keeps other runs of this program from the disk for as long as this object lives. The lock is on
/// the disk's root folder: nothing is written for it, an ordinary user and root share it, and a
/// process that dies gives it back. Another user can hold it, which delays a run and nothing else.
class RunLock {
  public:
    using Deadline = std::chrono::steady_clock::time_point;

    /// Waits for the lock until then.
    RunLock(const std::string& diskRoot, Deadline deadline);

    [[nodiscard]] bool isHeld() const { return isHeld_; }

  private:
    FileDescriptor root_;
    bool isHeld_ = false;
};

/// How long a loop that waits for others pauses between two looks.
inline constexpr std::chrono::milliseconds pauseBetweenLooks{100};

}  // namespace installer
