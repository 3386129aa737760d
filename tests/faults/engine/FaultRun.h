#pragma once

#include <functional>

#include "ports/Authorization.h"
#include "ports/FileManager.h"
#include "tests/faults/engine/FaultOracle.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Faults.h"

namespace installer::test {

/// The texts of the scene's product, and its bundle and disk on the volume.
void prepareFaultScene(FakePlatform& fake, const std::string& volume);

/// Runs the wizard's install step for the three hosts of the scene, with the external editors, and
/// tells how it went. The hosts are looked up with nothing failing; then `atStart` is called, when
/// there is one, and `faults` counts. Throws `Faults::Runaway` when the run does not end.
[[nodiscard]] RunReport runInstallStep(FakePlatform& fake, FileManager& files,
                                       Authorizations& authorizations, Faults& faults,
                                       const std::function<void()>& atStart = {});

}  // namespace installer::test
