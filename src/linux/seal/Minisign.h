#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace installer {

// Public keys and detached signatures in the format of minisign(1), of which only the one that
// signs a file's hash is known.

struct PublicKey {
    std::string number;  ///< eight bytes that tell keys apart
    std::string bytes;
};

/// Reads a public key: a comment's line, then the key.
[[nodiscard]] std::optional<PublicKey> parsedPublicKey(std::string_view text);
[[nodiscard]] std::string textOf(const PublicKey& key);

/// What is signed: the hash of the file's bytes.
[[nodiscard]] std::string hashForSignature(std::string_view bytes);

/// Whether the text is a signature of these bytes, and of its own trusted comment, by that key.
[[nodiscard]] bool isSignedBy(const PublicKey& key, std::string_view bytes,
                              std::string_view signature);

/// The marks of the two formats.
inline constexpr std::string_view keyMark = "Ed";
inline constexpr std::string_view signatureMark = "ED";
inline constexpr std::string_view untrustedComment = "untrusted comment: ";
inline constexpr std::string_view trustedComment = "trusted comment: ";

}  // namespace installer
