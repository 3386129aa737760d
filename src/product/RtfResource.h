#pragma once

#include <optional>
#include <string>

#include "foundation/text/StyledText.h"

namespace installer {

struct Platform;

/// The running bundle's page NAME.rtf as styled text, read anew on every call. nullopt, with the
/// reason in the system log, if it is missing, cannot be read or is no RTF. A page that is too long
/// for a window is cut, and says so at its end.
[[nodiscard]] std::optional<StyledText> rtfResource(Platform& platform, const std::string& name);

/// What is shown in place of a missing page: "nil".
[[nodiscard]] StyledText nilText();

}  // namespace installer
