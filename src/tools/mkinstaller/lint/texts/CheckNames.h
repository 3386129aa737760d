#pragma once

#include "tools/mkinstaller/lint/basis/LintContext.h"
#include "tools/mkinstaller/lint/texts/TextTables.h"

namespace installer {

/// The company, the product and its settings domain: they become names of folders and files, so
/// they must be the same in each language and usable as such.
void checkNames(const LintContext& context, const TextTables& tables);

}  // namespace installer
