#pragma once

#include <optional>
#include <string>

namespace installer {

/// What is wrong with a bundle that its maker has signed, as a sentence that names the file: one
/// was changed, is missing, was added, or the signature is not that of the key. nullopt if nothing
/// is, and for a bundle that is not signed. The key lies in the bundle: this tells a bundle that
/// was damaged or changed in part, not one that somebody else has signed anew.
[[nodiscard]] std::optional<std::string> brokenSealOf(const std::string& bundleFolder);

}  // namespace installer
