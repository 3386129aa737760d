#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "foundation/values/WriteGrant.h"
#include "ports/Authorization.h"

namespace installer {

class InstallProgress;
class SearchPaths;

/// Why an item could not be installed; empty while nothing is known.
struct Trouble {
    std::string shown;   ///< for people, in their language
    std::string logged;  ///< in the system's words, for support

    friend bool operator==(const Trouble&, const Trouble&) = default;
};

/// The state of one install run, shared by everything that takes part in it.
struct InstallRun {
    /// The group that owns what is installed; the platform knows what it is called there.
    static constexpr const char* group = "admin";
    /// The permissions of everything in an installed item.
    static constexpr std::uint32_t itemPermissions = 0775;

    explicit InstallRun(const SearchPaths& searchPaths);

    /// Forgets the outcome of the run before. The authorization stays: who ended that run decides
    /// whether the next one asks again.
    void begin();

    /// Gives the run its authorization, or takes it away.
    void setAuthorization(std::unique_ptr<Authorization> newAuthorization);
    /// Says what the run may change as the administrator.
    void limitTo(WriteGrant newGrant);
    /// Null for nobody. Not owned.
    void setProgress(InstallProgress* newProgress);

    /// The run has failed, since the item with that destination could not be installed. The reason
    /// is the trouble that is known now.
    void recordFailure(const std::string& path);

    std::string loginName;    ///< the user who will own what is installed
    std::string ownerString;  ///< "LOGIN:admin", as chown wants it
    std::unique_ptr<Authorization> authorization;
    WriteGrant grant;                     ///< what the run may change with that authorization
    InstallProgress* progress = nullptr;  ///< told of every item and of the bytes of its copies

    /// Told before somebody may be asked for the rights, and after the answer.
    std::function<void(bool asks)> onAsking;

    bool authDenied = false;  ///< administrator rights were refused or lost; no more is copied
    bool fileOpErrorOccurred = false;  ///< an item could not be installed; the run has failed
    /// Every destination that was installed, in that order; a path installed twice is there twice.
    std::vector<std::string> installedPaths;
    /// The destinations that could not be installed, in that order, each once.
    std::vector<std::string> failedPaths;
    /// What stands in the way of the current item.
    Trouble trouble;
    /// Why each of the failed paths failed, by path; nothing is there without a reason.
    std::map<std::string, Trouble> failureReasons;
};

}  // namespace installer
