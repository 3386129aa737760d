#include "tools/installerctl/records/Sha256.h"

#include <array>

namespace installer {

namespace {

const unsigned char* bytesOf(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

}  // namespace

Sha256::Sha256() {
    crypto_hash_sha256_init(&state_);
}

void Sha256::add(std::string_view bytes) {
    crypto_hash_sha256_update(&state_, bytesOf(bytes), bytes.size());
}

std::string Sha256::finish() {
    std::array<unsigned char, crypto_hash_sha256_BYTES> hash{};
    crypto_hash_sha256_final(&state_, hash.data());
    std::array<char, crypto_hash_sha256_BYTES * 2 + 1> digits{};
    sodium_bin2hex(digits.data(), digits.size(), hash.data(), hash.size());
    return digits.data();
}

}  // namespace installer
