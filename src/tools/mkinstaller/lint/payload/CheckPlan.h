#pragma once

#include "ports/Platform.h"
#include "tools/mkinstaller/lint/basis/LintContext.h"

namespace installer {

/// What a run will do with the payload, taken from the installer's own plan: what it leaves out and
/// why, what it installs twice, and what goes where it should not. `platform` has the product as
/// its bundle.
void checkPlan(const LintContext& context, Platform& platform);

}  // namespace installer
