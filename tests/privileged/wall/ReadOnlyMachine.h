#pragma once

#include <functional>
#include <string>

namespace installer::test {

/// Where a process of `onReadOnlyMachine` can write, and nobody else sees it.
inline constexpr const char* playground = "/media";
inline constexpr const char* canaryFolder = "/mnt";

/// Runs `work` in a child process for which all of the machine is read-only but two empty folders
/// of its own: what it does by mistake does no harm. Gives what `work` returned ("" for success is
/// the custom), or how the child died.
[[nodiscard]] std::string onReadOnlyMachine(const std::function<std::string()>& work);

}  // namespace installer::test
