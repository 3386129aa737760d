#pragma once

#include "ports/Authorization.h"

namespace installer {

class HostModel;
struct Platform;

/// Why nothing can be put into one of the host's folders. The host is offered all the same: it is
/// there, and only its owner can say where its link should lead.
[[nodiscard]] LinkRefusal linkRefusalOf(Platform& platform, const HostModel& host);

/// The reason as the end of a sentence about the host, in English.
[[nodiscard]] const char* description(LinkRefusal refusal);

}  // namespace installer
