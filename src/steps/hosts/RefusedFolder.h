#pragma once

#include <string>

#include "ports/Authorization.h"

namespace installer {

class Bundle;

/// The folder with the reason why nothing can be put into it, as the window shows it; the folder
/// alone for `none`.
[[nodiscard]] std::string refusedFolderText(const Bundle& bundle, LinkRefusal refusal,
                                            const std::string& folder);

}  // namespace installer
