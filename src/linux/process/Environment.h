#pragma once

#include <functional>
#include <optional>
#include <string>

namespace installer {

/// Looks up a variable of an environment; nullopt if it is not set.
using Environment = std::function<std::optional<std::string>(const std::string& name)>;

/// The environment of this process.
[[nodiscard]] Environment processEnvironment();

}  // namespace installer
