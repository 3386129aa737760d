#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "linux/seal/Minisign.h"

namespace installer {

/// A maker's key, in the format of minisign(1) without a password.
class SigningKey {
  public:
    /// A new one.
    [[nodiscard]] static SigningKey generate();
    /// Reads the text of such a file. A sentence for the maker in `problem` if it is none, or one
    /// with a password.
    [[nodiscard]] static std::optional<SigningKey> parsed(std::string_view text,
                                                          std::string& problem);

    [[nodiscard]] std::string text() const;
    [[nodiscard]] const PublicKey& publicKey() const { return publicKey_; }

    /// A detached signature of these bytes of a file of that name. The same bytes, name and time
    /// give the same signature.
    [[nodiscard]] std::string signatureOf(std::string_view bytes, const std::string& name,
                                          std::int64_t time) const;

  private:
    PublicKey publicKey_;
    std::string secret_;
};

}  // namespace installer
