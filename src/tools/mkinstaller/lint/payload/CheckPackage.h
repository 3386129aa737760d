#pragma once

#include <string>

#include "tools/mkinstaller/lint/basis/LintContext.h"

namespace installer {

/// A package by its property list: its executable and its identifier.
void checkPackage(const LintContext& context, const std::string& package);

/// Whether the file is the one that its package's property list calls the executable.
[[nodiscard]] bool isPackageExecutable(const std::string& file);

}  // namespace installer
