#pragma once

#include <string>

namespace installer {

class Bundle;

// Three look-ups of a text. They differ in the table and in what a missing key gives.

/// The text under the key in the default table, or the fallback when the key is missing.
[[nodiscard]] std::string localizedText(const Bundle& bundle, const std::string& key,
                                        const std::string& fallback = "");

/// The maker's or the product's name in the table "installer", for texts that people read: the
/// empty text when the key is missing.
[[nodiscard]] std::string installerText(const Bundle& bundle, const std::string& key);

/// The same names where they become names of folders and files: a missing key gives the key's own
/// text, so that a path never loses a component. A name that is empty, or has a component that is
/// "." or "..", counts as missing: with it a path would mean another folder than the maker's.
[[nodiscard]] std::string folderName(const Bundle& bundle, const std::string& key);

}  // namespace installer
