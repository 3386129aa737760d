#pragma once

#include <optional>
#include <string>

namespace installer {

class Bundle;

// Where things lie in a package, below its folder, and which program starts it. The one place that
// spells these names.

inline constexpr const char* packageInformation = "Contents/Info.plist";
inline constexpr const char* packageResources = "Contents/Resources";
inline constexpr const char* packageSharedSupport = "Contents/SharedSupport";

/// Whether the text names one entry of a folder: not empty, not "." or "..", no "/" and no NUL. A
/// name from a property list must be one, or it could lead out of the package.
[[nodiscard]] bool isPlainFileName(const std::string& name);

/// The path of the package's program of that name, whether it exists or not; nullopt unless it is
/// a plain file name.
[[nodiscard]] std::optional<std::string> packageProgram(const std::string& package,
                                                        const std::string& name);

/// The program that the package's CFBundleExecutable names; nullopt if that is missing or no plain
/// file name. Nothing else decides what starts a package.
[[nodiscard]] std::optional<std::string> namedProgram(const std::string& package,
                                                      const Bundle& bundle);

/// The package that has this program; nullopt if the program does not lie where programs of
/// packages do.
[[nodiscard]] std::optional<std::string> packageOfProgram(const std::string& program);

}  // namespace installer
