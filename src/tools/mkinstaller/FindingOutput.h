#pragma once

#include <string>
#include <vector>

#include "tools/mkinstaller/lint/basis/Findings.h"
#include "tools/terminal/Colors.h"

namespace installer {

/// `FILE:LINE: error M014: what is wrong; how to repair it`, without a line end. Control characters
/// in names of files are made visible.
[[nodiscard]] std::string lineOf(const Finding& finding, Strictness strictness, Colors colors);

/// All findings as one JSON value, with a line end.
[[nodiscard]] std::string jsonOf(const std::string& product, const std::vector<Finding>& findings,
                                 Strictness strictness);

}  // namespace installer
