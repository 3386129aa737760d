#pragma once

#include <string>

#include "tools/installerctl/operations/ExitStatus.h"
#include "tools/installerctl/output/Report.h"
#include "tools/installerctl/records/Receipt.h"

namespace installer {

struct RunPlan;

/// What the receipt says of an item; how it is, the caller adds.
[[nodiscard]] ReportedItem reportedItem(const Receipt::Item& item);

/// Puts what the plan says into the report. `hasReceipt`: whether there is a last receipt.
void addPlan(Report& report, const RunPlan& plan, bool hasReceipt);

/// How many items are new, replaced, the same and to be removed.
[[nodiscard]] std::string planSummary(const Report& report);

/// Says that the bundle has no payload.
[[nodiscard]] ExitStatus withoutPayload(Report& report);

}  // namespace installer
