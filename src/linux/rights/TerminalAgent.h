#pragma once

#include <functional>

#include <sys/types.h>

#include "privileged/system/Spawn.h"

namespace installer {

/// Runs polkit's text agent on this process's terminal while this object lives. If the agent does
/// not start or ends early, polkit has no agent and refuses.
class TerminalAgent {
  public:
    /// Returns as soon as it is registered with polkit. Calls `whileWaiting` several times a second
    /// until then.
    TerminalAgent(SpawnRequest command, const std::function<void()>& whileWaiting);
    /// Ends it, and a question that it has open.
    ~TerminalAgent();
    TerminalAgent(const TerminalAgent&) = delete;
    TerminalAgent& operator=(const TerminalAgent&) = delete;

  private:
    pid_t process_ = -1;
};

}  // namespace installer
