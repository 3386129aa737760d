#pragma once

#include <set>
#include <string>

#include "tools/mkinstaller/lint/basis/LintContext.h"
#include "tools/mkinstaller/lint/texts/TextTables.h"

namespace installer {

/// The tables as files: their syntax, and the same keys in each language. `keysOfLayouts` are asked
/// for by the product's own layouts, beside those that the installer asks for itself.
void checkTables(const LintContext& context, const TextTables& tables,
                 const std::set<std::string>& keysOfLayouts);

/// What the texts say: placeholders, translations, addresses.
void checkTexts(const LintContext& context, const TextTables& tables);

}  // namespace installer
