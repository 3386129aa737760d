#include "install/engine/PlannedCopies.h"

#include <cstddef>
#include <optional>

#include "install/plan/InstallPlan.h"
#include "install/run/InstallRun.h"

namespace installer {

CopySchedule plannedCopies(const InstallPlan& plan, const InstallRun& run) {
    CopySchedule schedule;
    schedule.next = [&items = plan.items,
                     index = std::size_t{0}]() mutable -> std::optional<ExpectedCopy> {
        if (index == items.size()) return std::nullopt;
        const PlannedItem& item = items[index++];
        return ExpectedCopy{item.source, item.destination, item.bytes};
    };
    schedule.attributes = {.owner = run.loginName,
                           .group = InstallRun::group,
                           .permissions = InstallRun::itemPermissions};
    return schedule;
}

}  // namespace installer
