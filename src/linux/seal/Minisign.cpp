#include "linux/seal/Minisign.h"

#include <vector>

#include <sodium.h>

#include "foundation/text/Text.h"
#include "linux/seal/Base64.h"

namespace installer {

namespace {

constexpr std::size_t numberSize = 8;

const unsigned char* unsignedBytes(std::string_view bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

bool verifies(std::string_view signature, std::string_view bytes, const PublicKey& key) {
    return signature.size() == crypto_sign_BYTES &&
           crypto_sign_verify_detached(unsignedBytes(signature), unsignedBytes(bytes), bytes.size(),
                                       unsignedBytes(key.bytes)) == 0;
}

/// The lines without carriage returns, which other systems' tools add.
std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines = split(std::string(text), '\n');
    for (std::string& line : lines) {
        if (line.ends_with('\r')) line.pop_back();
    }
    return lines;
}

}  // namespace

std::optional<PublicKey> parsedPublicKey(std::string_view text) {
    const std::vector<std::string> lines = linesOf(text);
    if (lines.size() < 2 || !lines[0].starts_with(untrustedComment)) return std::nullopt;
    const auto bytes = bytesOfBase64(lines[1]);
    const std::size_t size = keyMark.size() + numberSize + crypto_sign_PUBLICKEYBYTES;
    if (!bytes || bytes->size() != size || !bytes->starts_with(keyMark)) return std::nullopt;
    return PublicKey{bytes->substr(keyMark.size(), numberSize),
                     bytes->substr(keyMark.size() + numberSize)};
}

std::string textOf(const PublicKey& key) {
    std::string number(numberSize * 2 + 1, '\0');
    sodium_bin2hex(number.data(), number.size(), unsignedBytes(key.number), numberSize);
    number.pop_back();
    return std::string(untrustedComment) + "public key " + number + "\n" +
           base64Of(std::string(keyMark) + key.number + key.bytes) + "\n";
}

std::string hashForSignature(std::string_view bytes) {
    std::string hash(crypto_generichash_BYTES_MAX, '\0');
    crypto_generichash(reinterpret_cast<unsigned char*>(hash.data()), hash.size(),
                       unsignedBytes(bytes), bytes.size(), nullptr, 0);
    return hash;
}

bool isSignedBy(const PublicKey& key, std::string_view bytes, std::string_view signature) {
    const std::vector<std::string> lines = linesOf(signature);
    if (lines.size() < 4 || !lines[0].starts_with(untrustedComment) ||
        !lines[2].starts_with(trustedComment)) {
        return false;
    }
    const auto whole = bytesOfBase64(lines[1]);
    const auto ofComment = bytesOfBase64(lines[3]);
    const std::string start = std::string(signatureMark) + key.number;
    if (!whole || !ofComment || !whole->starts_with(start)) return false;
    const std::string ofBytes = whole->substr(start.size());
    return verifies(ofBytes, hashForSignature(bytes), key) &&
           verifies(*ofComment, ofBytes + lines[2].substr(trustedComment.size()), key);
}

}  // namespace installer
