#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace installer {

/// The numbers of the arguments that a format uses, ascending, each as often as it is used. So only
/// numbered placeholders can change places. None when a percent sign fills in nothing.
[[nodiscard]] std::optional<std::vector<int>> placeholdersOf(std::string_view format);

}  // namespace installer
