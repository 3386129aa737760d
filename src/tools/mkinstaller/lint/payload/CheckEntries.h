#pragma once

#include <string_view>

#include "tools/mkinstaller/lint/basis/LintContext.h"

namespace installer {

/// Every entry of the payload and of SharedSupport as it lies on the maker's disk: names, kinds,
/// links, modes, and the packages among them.
void checkEntries(const LintContext& context);

/// Whether an entry of that name is what desktops and version control systems leave in folders.
[[nodiscard]] bool isDebris(std::string_view name);

}  // namespace installer
