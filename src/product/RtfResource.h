#pragma once

#include <optional>
#include <string>

#include "foundation/text/StyledText.h"

namespace installer {

struct Platform;

/// The running bundle's file NAME.rtf as styled text, read anew on every call. None, with the
/// reason in the system log, when it is missing, cannot be read or is no RTF.
[[nodiscard]] std::optional<StyledText> rtfResource(Platform& platform, const std::string& name);

/// What is shown where a text is missing: "nil".
[[nodiscard]] StyledText nilText();

}  // namespace installer
