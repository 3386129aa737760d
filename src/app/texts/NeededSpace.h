#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hosts/HostModel.h"
#include "install/plan/InstallPlan.h"

namespace installer {

class Bundle;
struct Platform;

/// What a run needs on the disks, and what they have.
struct Space {
    std::uint64_t needed = 0;  ///< as if nothing were there that is replaced
    /// Of the fullest disk that something goes to; nullopt if nobody knows.
    std::optional<std::uint64_t> free = {};
};

/// Knows what a run for some of the hosts needs. Reads the payload when it is first asked, and
/// again only after a change of the list of hosts.
class NeededSpace {
  public:
    /// The platform outlives this object.
    explicit NeededSpace(Platform& platform) : platform_(platform) {}

    [[nodiscard]] Space of(const std::vector<HostModel>& selected,
                           const std::vector<HostModel>& all);

  private:
    /// A plan depends on the hosts and on the folders that they have now.
    struct PlannedFor {
        std::vector<HostModel> hosts;
        std::vector<std::string> folders;

        friend bool operator==(const PlannedFor&, const PlannedFor&) = default;
    };
    const InstallPlan& planFor(const std::vector<HostModel>& all);

    Platform& platform_;
    PlannedFor plannedFor_;
    std::optional<InstallPlan> plan_;
};

/// The sentence about it; empty if nobody knows what is free.
[[nodiscard]] std::string spaceText(const Bundle& bundle, const Space& space);

}  // namespace installer
