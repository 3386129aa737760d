#pragma once

#include "tools/installerctl/operations/ExitStatus.h"
#include "tools/installerctl/operations/Session.h"
#include "tools/installerctl/output/Report.h"
#include "tools/installerctl/records/Receipt.h"

namespace installer {

/// Compares the disk with the receipt, entry by entry. Each item is "ok", "changed", "missing", or
/// "extra" if there is only more in it than was installed.
[[nodiscard]] ExitStatus verifyReceipt(const Session& session, const Receipt& receipt,
                                       Report& report);

/// The same without a receipt: with the payload where the installer log and the payload name the
/// same item; of an item that only the log names it is known only whether it is there.
[[nodiscard]] ExitStatus verifyLog(const Session& session, Report& report);

}  // namespace installer
