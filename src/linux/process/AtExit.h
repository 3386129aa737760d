#pragma once

#include <functional>

namespace installer {

/// Runs a function when a library ends the process with `exit`, as the window toolkit does when the
/// display is gone. At most one object of this class lives at a time; once it is destroyed, nothing
/// is run.
class AtExit {
  public:
    explicit AtExit(std::function<void()> function);
    ~AtExit();
    AtExit(const AtExit&) = delete;
    AtExit& operator=(const AtExit&) = delete;
};

}  // namespace installer
