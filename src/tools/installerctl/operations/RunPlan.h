#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "install/plan/InstallPlan.h"
#include "tools/installerctl/operations/Session.h"
#include "tools/installerctl/records/EntryMap.h"
#include "tools/installerctl/records/Receipt.h"
#include "tools/installerctl/records/TreeRecords.h"

namespace installer {

/// What a run does for one user. The items of the machine belong to the first one.
struct UserPlan {
    UserMachine* machine = nullptr;
    std::vector<HostModel> hosts;  ///< without those that an earlier user's plan has
    InstallPlan plan;
};

/// What a run for all users would do, compared with the disk as it is.
struct RunPlan {
    std::vector<UserPlan> users;
    std::vector<ReportedHost> hosts;  ///< found ones, then refused ones, of each user in turn
    std::vector<ReportedItem> items;  ///< in the order of the run
    EntryMap expected;                ///< what the items' places hold after the run
    std::vector<PathNote> leftOut;
    std::vector<PathNote> refused;  ///< items that no run installs, because of where they would go
    std::vector<ReportedSpace> space;
    std::vector<EntryRecord> obsolete;  ///< on the disk, as only the last receipt knows it
    Receipt receipt;                    ///< as it will be, but for what only the run can know
    bool hasPayload = false;
    bool hasHosts = false;  ///< whether a host of any user is used
    bool receiptDiffers = false;

    /// Whether an item differs from what is on the disk, or something obsolete is there.
    [[nodiscard]] bool itemsDiffer() const;
};

/// Writes nothing. `last` is the receipt of the last run, or null.
[[nodiscard]] RunPlan makeRunPlan(const Session& session, const Receipt* last,
                                  const ReadProgress& progress = {});

/// The path of the list of external editors on that machine.
[[nodiscard]] std::string externalEditorsFile(UserMachine& machine);

/// Which rule takes an item, in one word.
[[nodiscard]] std::string_view nameOf(InstallRule rule);

/// The rule's name of the list of external editors, which no payload has.
inline constexpr const char* editorsRule = "externalEditors";

}  // namespace installer
