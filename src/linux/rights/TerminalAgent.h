#pragma once

#include <functional>

#include <sys/types.h>

#include "privileged/system/Spawn.h"

namespace installer {

/// The program through which polkit asks on this process's terminal, while this object lives. A
/// program that does not start, or ends by itself, changes nothing: then polkit finds nobody to
/// ask and refuses.
class TerminalAgent {
  public:
    /// Returns as soon as polkit knows of it. Calls `whileWaiting` several times a second until
    /// then.
    TerminalAgent(SpawnRequest command, const std::function<void()>& whileWaiting);
    /// Ends it, and a question that it has open.
    ~TerminalAgent();
    TerminalAgent(const TerminalAgent&) = delete;
    TerminalAgent& operator=(const TerminalAgent&) = delete;

  private:
    pid_t process_ = -1;
};

}  // namespace installer
