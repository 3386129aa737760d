#pragma once

#include <string>
#include <vector>

#include "tools/installerctl/operations/RunPlan.h"
#include "tools/installerctl/records/Receipt.h"

namespace installer {

/// The time of now as a receipt has it: 2026-01-31T12:00:00Z.
[[nodiscard]] std::string timeStamp();

/// The folders that a run may make and that are not there yet, the upper ones first.
[[nodiscard]] std::vector<std::string> missingFolders(const Session& session, const RunPlan& plan);

/// The receipt before the run: what is there and what will be, that with any mode, since an item
/// gets its own after it was copied. A run that dies leaves this receipt.
[[nodiscard]] Receipt receiptBefore(const Session& session, const RunPlan& plan,
                                    const Receipt* last, std::vector<std::string> folders);

/// The receipt after a run that has installed everything.
[[nodiscard]] Receipt receiptAfter(const RunPlan& plan, const Receipt& before);

}  // namespace installer
