#pragma once

#include <string>

#include "ports/Authorization.h"

namespace installer {

class Bundle;
class HostModel;
struct Platform;

/// Why nothing can be put into one of the host's folders. The host is offered all the same: it is
/// there, and only its owner can say where its link should lead.
[[nodiscard]] LinkRefusal linkRefusalOf(Platform& platform, const HostModel& host);

/// The folder with the reason, as a row of the list of hosts shows it; the folder alone for `none`.
[[nodiscard]] std::string refusedFolderText(const Bundle& bundle, LinkRefusal refusal,
                                            const std::string& folder);

/// The reason as the end of a sentence about the host, in English.
[[nodiscard]] const char* description(LinkRefusal refusal);

}  // namespace installer
