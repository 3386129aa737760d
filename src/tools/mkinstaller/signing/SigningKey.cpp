#include "tools/mkinstaller/signing/SigningKey.h"

#include <stdexcept>
#include <vector>

#include <sodium.h>

#include "foundation/text/Text.h"
#include "linux/seal/Base64.h"

namespace installer {

namespace {

// The parts of a secret key's file: the marks of the signature, of the way of the password and of
// the checksum, the salt and the two limits of the password, the number, the key, the checksum.
constexpr std::string_view noPassword("\0\0", 2);
constexpr std::string_view checksumMark = "B2";
constexpr std::size_t passwordSize = 32 + 8 + 8;
constexpr std::size_t numberSize = 8;
constexpr std::size_t checksumSize = 32;
constexpr std::size_t headSize = 2 + 2 + 2 + passwordSize;
constexpr std::size_t wholeSize = headSize + numberSize + crypto_sign_SECRETKEYBYTES + checksumSize;

unsigned char* writableBytes(std::string& bytes) {
    return reinterpret_cast<unsigned char*>(bytes.data());
}

const unsigned char* unsignedBytes(std::string_view bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

void needSodium() {
    if (sodium_init() < 0) throw std::runtime_error("there are no random numbers to be had");
}

std::string checksumOf(std::string_view number, std::string_view secret) {
    const std::string checked = std::string(keyMark).append(number).append(secret);
    std::string sum(checksumSize, '\0');
    crypto_generichash(writableBytes(sum), sum.size(), unsignedBytes(checked), checked.size(),
                       nullptr, 0);
    return sum;
}

/// A key without a password may have no checksum; its two halves belong together in any case.
bool isWhole(const PublicKey& key, const std::string& secret, const std::string& checksum) {
    std::string publicHalf(crypto_sign_PUBLICKEYBYTES, '\0');
    std::string whole(crypto_sign_SECRETKEYBYTES, '\0');
    crypto_sign_seed_keypair(writableBytes(publicHalf), writableBytes(whole),
                             unsignedBytes(secret));
    const bool hasChecksum = checksum != std::string(checksumSize, '\0');
    return whole == secret && (!hasChecksum || checksum == checksumOf(key.number, secret));
}

std::string signatureWith(const std::string& secret, std::string_view bytes) {
    std::string signature(crypto_sign_BYTES, '\0');
    crypto_sign_detached(writableBytes(signature), nullptr, unsignedBytes(bytes), bytes.size(),
                         unsignedBytes(secret));
    return signature;
}

}  // namespace

SigningKey SigningKey::generate() {
    needSodium();
    SigningKey key;
    key.publicKey_.number.resize(numberSize);
    key.publicKey_.bytes.resize(crypto_sign_PUBLICKEYBYTES);
    key.secret_.resize(crypto_sign_SECRETKEYBYTES);
    randombytes_buf(key.publicKey_.number.data(), numberSize);
    crypto_sign_keypair(writableBytes(key.publicKey_.bytes), writableBytes(key.secret_));
    return key;
}

std::optional<SigningKey> SigningKey::parsed(std::string_view text, std::string& problem) {
    needSodium();
    problem = "it is no secret key";
    const std::vector<std::string> lines = split(std::string(text), '\n');
    if (lines.size() < 2 || !lines[0].starts_with(untrustedComment)) return std::nullopt;
    const auto bytes = bytesOfBase64(lines[1]);
    if (!bytes || bytes->size() != wholeSize || !bytes->starts_with(keyMark)) return std::nullopt;
    if (bytes->substr(2, 2) != noPassword) {
        problem = "it has a password; make a key without one, and keep it where only you can read";
        return std::nullopt;
    }
    SigningKey key;
    key.publicKey_.number = bytes->substr(headSize, numberSize);
    key.secret_ = bytes->substr(headSize + numberSize, crypto_sign_SECRETKEYBYTES);
    // The second half of a secret key is the public one.
    key.publicKey_.bytes = key.secret_.substr(crypto_sign_SEEDBYTES);
    if (isWhole(key.publicKey_, key.secret_, bytes->substr(wholeSize - checksumSize))) return key;
    problem = "it is damaged";
    return std::nullopt;
}

std::string SigningKey::text() const {
    std::string bytes = std::string(keyMark).append(noPassword).append(checksumMark);
    bytes.append(passwordSize, '\0');
    bytes.append(publicKey_.number).append(secret_);
    bytes.append(checksumOf(publicKey_.number, secret_));
    return std::string(untrustedComment) + "secret key; keep it to yourself\n" + base64Of(bytes) +
           "\n";
}

std::string SigningKey::signatureOf(std::string_view bytes, const std::string& name,
                                    std::int64_t time) const {
    const std::string comment = "timestamp:" + std::to_string(time) + "\tfile:" + name + "\thashed";
    const std::string signature = signatureWith(secret_, hashForSignature(bytes));
    return std::string(untrustedComment) + "signature of " + name + "\n" +
           base64Of(std::string(signatureMark) + publicKey_.number + signature) + "\n" +
           std::string(trustedComment) + comment + "\n" +
           base64Of(signatureWith(secret_, signature + comment)) + "\n";
}

}  // namespace installer
