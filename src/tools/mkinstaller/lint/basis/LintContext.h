#pragma once

#include "tools/mkinstaller/lint/basis/Findings.h"
#include "tools/mkinstaller/sources/Kit.h"
#include "tools/mkinstaller/sources/Product.h"

namespace installer {

/// What every check works on. Checks hold no state of their own and never write to a file.
struct LintContext {
    const Product& product;
    const Kit& kit;
    Findings& findings;
};

}  // namespace installer
