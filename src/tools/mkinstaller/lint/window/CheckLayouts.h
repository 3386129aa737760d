#pragma once

#include <set>
#include <string>

#include "tools/mkinstaller/lint/basis/LintContext.h"
#include "tools/mkinstaller/lint/texts/TextTables.h"
#include "tools/mkinstaller/lint/window/WindowNames.h"

namespace installer {

/// The layouts that a product brings itself, by what they name. Those that are the kit's own, byte
/// for byte, are fine.
struct OwnLayout {
    std::string file;
    std::string description;  ///< such as "MainWindow"
};
[[nodiscard]] std::vector<OwnLayout> ownLayouts(const Product& product, const Kit& kit);
/// The kit's own layouts, which a product has where it brings none.
[[nodiscard]] std::vector<OwnLayout> kitLayouts(const Kit& kit);

/// What the layouts need of the product: texts by their keys, pictures by their file names.
struct LayoutNeeds {
    std::set<std::string> textKeys;
    std::set<std::string> pictures;
};
[[nodiscard]] LayoutNeeds needsOf(const std::vector<OwnLayout>& layouts);

/// Whether each name in the layouts is one that the installer knows.
void checkLayouts(const LintContext& context, const std::vector<OwnLayout>& layouts,
                  const TextTables& tables, const WindowNames& names);

}  // namespace installer
