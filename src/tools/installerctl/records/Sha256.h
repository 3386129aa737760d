#pragma once

#include <string>
#include <string_view>

#include <sodium.h>

namespace installer {

/// The SHA-256 of what is added, piece by piece.
class Sha256 {
  public:
    Sha256();
    void add(std::string_view bytes);
    /// In hexadecimal digits. Nothing can be added afterwards.
    [[nodiscard]] std::string finish();

  private:
    crypto_hash_sha256_state state_{};
};

}  // namespace installer
