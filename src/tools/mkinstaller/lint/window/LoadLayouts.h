#pragma once

#include <vector>

#include "tools/mkinstaller/lint/basis/ProductBundle.h"
#include "tools/mkinstaller/lint/window/CheckLayouts.h"

namespace installer {

class SystemLog;

/// Loads each layout with the kit's own window module, on no display, and tells what it complains
/// of. The module can be made once in a process. Where it cannot be loaded, as on a machine without
/// Qt, `notes` is told, and nothing more is found.
void loadLayouts(const LintContext& context, const std::vector<OwnLayout>& layouts,
                 ProductBundle& bundle, WindowNames& names, SystemLog& notes);

}  // namespace installer
