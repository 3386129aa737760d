#pragma once

#include "tools/mkinstaller/lint/basis/LintContext.h"

namespace installer {

/// The pictures of the window: those that a product brings itself, and in a finished bundle all
/// that the installer shows.
void checkPictures(const LintContext& context);

}  // namespace installer
