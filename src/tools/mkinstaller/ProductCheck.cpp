#include "tools/mkinstaller/ProductCheck.h"

#include <algorithm>
#include <iostream>

#include "tools/mkinstaller/FindingOutput.h"
#include "tools/mkinstaller/lint/Linter.h"

namespace installer {

bool isFitForUse(const Product& product, const Kit& kit, SystemLog& log) {
    constexpr Strictness strictness = Strictness::warningsAllowed;
    const std::vector<Finding> findings = lint(product, kit, log);
    for (const Finding& finding : findings) {
        std::cerr << lineOf(finding, strictness, Colors::none) << '\n';
    }
    return std::ranges::none_of(findings, [&](const Finding& finding) {
        return severityOf(finding, strictness) == Severity::error;
    });
}

}  // namespace installer
