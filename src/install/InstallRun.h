#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Authorization.h"
#include "platform/ProgressSink.h"

namespace installer {

class SearchPaths;

/// The state of one install run, shared by everything that takes part in it.
struct InstallRun {
    /// The group that owns what is installed; the platform knows what it is called there.
    static constexpr const char* group = "admin";

    explicit InstallRun(const SearchPaths& searchPaths);

    /// Forgets the outcome of the run before. The authorization stays: who ended that run decides
    /// whether the next one asks again.
    void begin();

    /// Gives the run its authorization, or takes it away.
    void setAuthorization(std::unique_ptr<Authorization> newAuthorization);
    void setProgressSink(ProgressSink* sink);

    std::string loginName;    ///< the user who will own what is installed
    std::string ownerString;  ///< "LOGIN:admin", as chown wants it
    std::unique_ptr<Authorization> authorization;
    ProgressSink* progress = nullptr;  ///< told of the bytes of every copy; not owned

    bool authDenied = false;  ///< administrator rights were refused; nothing more is copied
    bool fileOpErrorOccurred = false;  ///< an item could not be installed; the run has failed
    /// Every destination that was installed, in that order; a path installed twice is there twice.
    std::vector<std::string> installedPaths;
};

}  // namespace installer
