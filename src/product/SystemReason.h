#pragma once

#include <string>
#include <system_error>

namespace installer {

class Bundle;

/// Why the system refused something, as people read it. The errors that people meet have texts in
/// every language; for any other one, and for a missing text, the system's own words.
[[nodiscard]] std::string systemReason(const Bundle& bundle, const std::error_code& error);

}  // namespace installer
