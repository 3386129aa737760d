#pragma once

#include <vector>

#include "tools/mkinstaller/lint/basis/Findings.h"
#include "tools/mkinstaller/sources/Kit.h"
#include "tools/mkinstaller/sources/Product.h"

namespace installer {

class SystemLog;

/// Everything that is wrong with the product, ordered by file and line. Reads what the installer
/// would read, with its own readers; changes nothing. `notes` is told of checks that this machine
/// cannot make.
[[nodiscard]] std::vector<Finding> lint(const Product& product, const Kit& kit, SystemLog& notes);

}  // namespace installer
