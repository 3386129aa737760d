#pragma once

#include <memory>
#include <string>

#include "foundation/observers/NotificationCenter.h"
#include "foundation/values/Result.h"
#include "linux/bundle/LinuxBundle.h"
#include "linux/desktop/LinuxApplicationDatabase.h"
#include "linux/files/LinuxFileManager.h"
#include "linux/files/LinuxFileQuery.h"
#include "linux/files/LinuxSearchPaths.h"
#include "linux/process/LinuxChildProcess.h"
#include "linux/process/PollEventLoop.h"
#include "linux/process/SystemClock.h"
#include "linux/settings/LinuxPreferencesStore.h"
#include "ports/Platform.h"
#include "privileged/system/Accounts.h"
#include "tools/installerctl/machine/Notes.h"
#include "tools/installerctl/machine/SharedAuthorizations.h"

namespace installer {

/// The machine as one user's installer sees it: the same adapters, without a display, over that
/// user's home and settings.
class UserMachine {
  public:
    UserMachine(std::string bundleFolder, std::string login, LinuxSearchPaths searchPaths);
    UserMachine(const UserMachine&) = delete;
    UserMachine& operator=(const UserMachine&) = delete;

    /// `user` with an empty home is the user who started the program. An error if the target volume
    /// is no folder; empty for none.
    [[nodiscard]] static Result<std::unique_ptr<UserMachine>> of(const UserAccount& user,
                                                                 const std::string& bundleFolder,
                                                                 const std::string& targetVolume);

    [[nodiscard]] Platform platform();
    [[nodiscard]] const std::string& login() const { return login_; }
    [[nodiscard]] std::string home() const { return searchPaths_.homeFolder().value_or(""); }
    [[nodiscard]] const LinuxSearchPaths& searchPaths() const { return searchPaths_; }
    [[nodiscard]] LinuxFileManager& files() { return files_; }
    [[nodiscard]] const LinuxApplicationDatabase& applications() const { return applications_; }
    [[nodiscard]] SharedAuthorizations& authorizations() { return authorizations_; }
    [[nodiscard]] const Notes& notes() const { return notes_; }

  private:
    Notes notes_;
    std::string bundleFolder_;
    std::string login_;
    LinuxSearchPaths searchPaths_;
    LinuxBundle bundle_;
    LinuxBundles bundles_;
    LinuxFileManager files_;
    PollEventLoop eventLoop_;
    LinuxFileQueries fileQueries_;
    LinuxChildProcesses processes_;
    SharedAuthorizations authorizations_;
    LinuxPreferencesStore preferences_;
    LinuxApplicationDatabase applications_;
    UnseenAlerts alerts_;
    SystemClock clock_;
    NotificationCenter notifications_;
};

}  // namespace installer
