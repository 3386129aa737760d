#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace installer {

/// With padding.
[[nodiscard]] std::string base64Of(std::string_view bytes);

/// nullopt if the text is not base64 as a whole.
[[nodiscard]] std::optional<std::string> bytesOfBase64(std::string_view text);

}  // namespace installer
