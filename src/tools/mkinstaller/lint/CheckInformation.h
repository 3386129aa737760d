#pragma once

#include "tools/mkinstaller/lint/basis/LintContext.h"

namespace installer {

/// The installer's own Info.plist: version, identifier, executable.
void checkInformation(const LintContext& context);

}  // namespace installer
