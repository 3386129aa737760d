#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "foundation/StyledText.h"

namespace installer {

/// What is wrong with a text that is no RTF, in words for the system log.
struct RtfError {
    std::string reason;
};

/// Reads what text editors write as RTF. Destinations and control words that it does not know are
/// passed over, as the format wants. An error for a text that is empty, does not begin as RTF, or
/// ends before its groups do. Time and memory are linear in the length of the text, whatever it
/// holds.
[[nodiscard]] std::variant<StyledText, RtfError> readRtf(std::string_view rtf);

}  // namespace installer
