#pragma once

#include "tools/mkinstaller/lint/basis/LintContext.h"

namespace installer {

/// Names of the sample product in the texts, pages, property list and payload of another one.
void checkLeftovers(const LintContext& context);

}  // namespace installer
