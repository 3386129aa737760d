#include "tools/mkinstaller/lint/Linter.h"

#include "ports/SystemLog.h"
#include "tools/mkinstaller/lint/CheckInformation.h"
#include "tools/mkinstaller/lint/CheckLeftovers.h"
#include "tools/mkinstaller/lint/CheckStructure.h"
#include "tools/mkinstaller/lint/basis/LintContext.h"
#include "tools/mkinstaller/lint/basis/ProductBundle.h"
#include "tools/mkinstaller/lint/basis/ScratchMachine.h"
#include "tools/mkinstaller/lint/payload/CheckEntries.h"
#include "tools/mkinstaller/lint/payload/CheckPlan.h"
#include "tools/mkinstaller/lint/texts/CheckNames.h"
#include "tools/mkinstaller/lint/texts/CheckPages.h"
#include "tools/mkinstaller/lint/texts/CheckTables.h"
#include "tools/mkinstaller/lint/texts/TextTables.h"
#include "tools/mkinstaller/lint/window/CheckLayouts.h"
#include "tools/mkinstaller/lint/window/CheckPictures.h"
#include "tools/mkinstaller/lint/window/LoadLayouts.h"
#include "tools/mkinstaller/lint/window/WindowNames.h"

namespace installer {

namespace {

/// What the core would log is told as findings, each where it belongs.
class NoLog final : public SystemLog {
  public:
    void log(std::string_view /*line*/) override {}
};

void checkSources(const LintContext& context, const TextTables& tables, const LayoutNeeds& needs) {
    checkStructure(context, needs.pictures);
    checkInformation(context);
    checkTables(context, tables, needs.textKeys);
    checkTexts(context, tables);
    checkNames(context, tables);
    checkPages(context);
    checkPictures(context);
    checkLeftovers(context);
    checkEntries(context);
}

}  // namespace

std::vector<Finding> lint(const Product& product, const Kit& kit, SystemLog& notes) {
    Findings findings;
    const LintContext context{product, kit, findings};
    const TextTables tables(product, kit);
    const auto layouts = ownLayouts(product, kit);
    LayoutNeeds needs = needsOf(layouts);
    // Pictures that the kit's layouts show where a product has them.
    needs.pictures.merge(needsOf(kitLayouts(kit)).pictures);
    checkSources(context, tables, needs);

    NoLog log;
    ProductBundle bundle(product, kit);
    ScratchMachine machine(bundle, log);
    Platform platform = machine.platform();
    checkPlan(context, platform);
    WindowNames names(platform);
    checkLayouts(context, layouts, tables, names);
    loadLayouts(context, layouts, bundle, names, notes);
    return findings.take();
}

}  // namespace installer
