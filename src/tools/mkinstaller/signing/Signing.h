#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/mkinstaller/signing/SigningKey.h"

namespace installer {

// Each gives a sentence for the maker on failure.

/// Writes FILE, which only its owner can read, and FILE.pub. Neither may exist.
[[nodiscard]] std::optional<std::string> writeNewKey(const std::string& file);

/// Reads a secret key's file.
[[nodiscard]] std::optional<SigningKey> readKey(const std::string& file, std::string& problem);

/// Puts the list of a bundle's files, its signature and the public key into the bundle.
[[nodiscard]] std::optional<std::string> sealBundle(const std::string& bundle,
                                                    const SigningKey& key, std::int64_t time);

/// Writes the detached signature of the file to FILE.minisig.
[[nodiscard]] std::optional<std::string> signFile(const std::string& file, const SigningKey& key,
                                                  std::int64_t time);

}  // namespace installer
