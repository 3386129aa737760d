#pragma once

#include <string>

#include "foundation/values/Result.h"
#include "tools/mkinstaller/sources/Kit.h"
#include "tools/mkinstaller/sources/Product.h"

namespace installer {

class SystemLog;

/// Puts "COMPANY PRODUCT Installer.app" together in the folder: the kit's program, layouts and
/// pictures, and over them what the product has. Modes and times are kept, links stay links. A
/// bundle of that name is replaced once the new one is whole. The path of the bundle; an error when
/// something could not be copied (the log says what) or a name is missing (EINVAL), and the old
/// bundle then stays.
[[nodiscard]] Result<std::string> assembleBundle(const Product& product, const Kit& kit,
                                                 const std::string& folder, SystemLog& log);

}  // namespace installer
