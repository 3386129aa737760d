#pragma once

#include "tools/mkinstaller/lint/basis/LintContext.h"

namespace installer {

/// The licence and the pages of each language, read as the installer reads them.
void checkPages(const LintContext& context);

}  // namespace installer
