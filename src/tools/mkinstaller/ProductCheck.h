#pragma once

#include "ports/SystemLog.h"
#include "tools/mkinstaller/sources/Kit.h"
#include "tools/mkinstaller/sources/Product.h"

namespace installer {

/// Lints a product before it is used. What is found goes to standard error; false if it has an
/// error.
[[nodiscard]] bool isFitForUse(const Product& product, const Kit& kit, SystemLog& log);

}  // namespace installer
