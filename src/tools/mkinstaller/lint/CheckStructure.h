#pragma once

#include <set>
#include <string>

#include "tools/mkinstaller/lint/basis/LintContext.h"

namespace installer {

/// The product's folder itself: its languages, its property list, and files that nobody looks for.
/// `picturesOfLayouts` are named by the product's own layouts.
void checkStructure(const LintContext& context, const std::set<std::string>& picturesOfLayouts);

}  // namespace installer
