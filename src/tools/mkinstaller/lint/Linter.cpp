#include "tools/mkinstaller/lint/Linter.h"

#include "tools/mkinstaller/lint/CheckInformation.h"
#include "tools/mkinstaller/lint/CheckNames.h"
#include "tools/mkinstaller/lint/CheckPages.h"
#include "tools/mkinstaller/lint/CheckStructure.h"
#include "tools/mkinstaller/lint/CheckTables.h"
#include "tools/mkinstaller/lint/LintContext.h"
#include "tools/mkinstaller/lint/TextTables.h"

namespace installer {

std::vector<Finding> lint(const Product& product, const Kit& kit) {
    Findings findings;
    const LintContext context{product, kit, findings};
    checkStructure(context, {});
    checkInformation(context);
    checkPages(context);
    const TextTables tables(product, kit);
    checkTables(context, tables, {});
    checkTexts(context, tables);
    checkNames(context, tables);
    return findings.take();
}

}  // namespace installer
