#pragma once

#include "tools/installerctl/operations/Remover.h"
#include "tools/installerctl/operations/Session.h"
#include "tools/installerctl/output/Report.h"
#include "tools/installerctl/records/Receipt.h"

namespace installer {

enum class RemovalDepth { dryRun, remove };

/// Takes back what the receipt records: its entries that are unchanged, then the folders that were
/// made and are empty, the menu entries, the log, and the receipt as the last. What another
/// product's receipt records, too, stays.
[[nodiscard]] ExitStatus removeProduct(const Session& session, const Receipt& receipt,
                                       RemovalDepth depth, Report& report);

/// Removes the folder of the receipts if it is empty: an earlier removal may have died before it.
void removeEmptyReceiptFolder(const Session& session);

}  // namespace installer
