#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace installer {

/// The user on whose behalf the helper acts, and the only one to whom it gives files.
class InvokingUser {
  public:
    explicit InvokingUser(uid_t number) : number_(number) {}

    /// From what pkexec or sudo left in the environment, else the real user of this process.
    /// nullopt if the environment holds anything but one user's number there.
    [[nodiscard]] static std::optional<InvokingUser> fromEnvironment();

    [[nodiscard]] uid_t number() const { return number_; }

    /// Whether this is a login name of that user.
    [[nodiscard]] bool isNamed(std::string_view name);

  private:
    uid_t number_;
    std::string knownName_;
};

}  // namespace installer
