#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "privileged/system/FileSystemUser.h"
#include "privileged/wall/HelperArguments.h"

namespace installer {

/// The user on whose behalf the helper acts, and the only one to whom it gives files.
class InvokingUser {
  public:
    explicit InvokingUser(uid_t number) : number_(number) {}

    /// The user whom the program that started this process says in its own variable of the
    /// environment; the real user of this process if root started it. nullopt if that variable
    /// holds anything but one user's number. No other variable is looked at.
    [[nodiscard]] static std::optional<InvokingUser> whoStartedBy(StartedBy program);

    [[nodiscard]] uid_t number() const { return number_; }

    /// By whose rights the sources of copies are opened; null for root.
    [[nodiscard]] const FileSystemUser* reader() const;

    /// Whether this is a login name of that user.
    [[nodiscard]] bool isNamed(std::string_view name);

  private:
    uid_t number_;
    std::string knownName_;
    mutable std::optional<FileSystemUser> reader_;  ///< looked up when it is first asked for
};

}  // namespace installer
