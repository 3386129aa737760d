#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "hosts/HostModel.h"

namespace installer {

struct Platform;

/// The first application that runs, of whichever user, and must not while these hosts are installed
/// into: one of a host, or one that the payload has for /Applications. The rules are those of the
/// window. nullopt if none runs.
[[nodiscard]] std::optional<std::string> runningHost(Platform& platform,
                                                     std::span<const HostModel> hosts);

}  // namespace installer
