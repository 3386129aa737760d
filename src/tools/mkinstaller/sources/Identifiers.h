#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace installer {

/// Whether the text is an identifier as `com.example.product`: at least two parts of letters,
/// digits and hyphens, a host's name backwards, so not one that begins with "www".
[[nodiscard]] bool isReverseDomain(std::string_view text);

/// The host to which the identifier belongs: com.example.filters is one of example.com.
[[nodiscard]] std::string domainOf(const std::string& identifier);

/// Whose identifiers begin like this one; none when they are nobody's whom this list knows.
[[nodiscard]] std::optional<std::string> knownOwnerOf(std::string_view identifier);

/// Whether the folder of that name in Application Support is that of a maker whose programs put
/// their own files there.
[[nodiscard]] bool isFolderOfKnownMaker(std::string_view company);

}  // namespace installer
