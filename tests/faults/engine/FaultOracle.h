#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/faults/engine/FaultScene.h"
#include "tests/support/Faults.h"

namespace installer::test {

/// What a run said of itself. Paths are those on its disk.
struct RunReport {
    bool successful = false;             ///< as the wizard's last step is told
    bool userMayWriteEverywhere = true;  ///< without the administrator's rights
    bool hasAuthorization = true;
    bool authDenied = false;
    std::vector<std::string> installed = {};
    std::vector<std::string> failed = {};
    std::vector<std::string> log = {};  ///< lines of the system log
    std::size_t alerts = 0;
    std::vector<Faults::Call> hits = {};  ///< the calls that were made to fail
};

/// What is wrong with a run on the disk `before` that left it as `after`: one line each, none when
/// the installer kept its promises. Knows the payload and the rules, and nothing of the engine.
///
/// Every destination holds the old item whole, or nothing, or the new one whole; nothing else on
/// the disk has changed. What the installer log lists is there, whole and new. What is not there
/// was reported, and the run has failed. The exceptions are the rules' own; each stands at the
/// function that asks for it.
[[nodiscard]] std::vector<std::string> complaints(const DiskTree& before, const DiskTree& after,
                                                  const RunReport& report);

}  // namespace installer::test
