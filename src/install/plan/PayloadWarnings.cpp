#include "install/plan/PayloadWarnings.h"

#include "foundation/text/Format.h"
#include "install/plan/InstallPlan.h"
#include "ports/SystemLog.h"

namespace installer {

void logPayloadWarnings(const InstallPlan& plan, SystemLog& log) {
    if (!plan.hasPayload) {
        log.log(formatted("There is no payload to install: %@", {plan.payloadFolder}));
        return;
    }
    for (const LeftOutEntry& entry : plan.leftOut) {
        const bool isUnread = entry.reason == LeftOutReason::unreadableFolder;
        log.log(formatted(isUnread ? "This payload folder cannot be read: %@"
                                   : "This payload item is never installed: %@",
                          {entry.path}));
    }
    for (const PlannedItem& item : plan.refused) {
        log.log(
            formatted("This item is not installed, since its destination is a folder of the "
                      "system: %@",
                      {item.destination}));
    }
}

}  // namespace installer
