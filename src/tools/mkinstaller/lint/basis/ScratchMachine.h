#pragma once

#include <string>

#include "foundation/observers/NotificationCenter.h"
#include "linux/bundle/LinuxBundle.h"
#include "linux/desktop/LinuxApplicationDatabase.h"
#include "linux/display/TextAlerts.h"
#include "linux/files/LinuxFileManager.h"
#include "linux/files/LinuxFileQuery.h"
#include "linux/files/LinuxSearchPaths.h"
#include "linux/process/LinuxChildProcess.h"
#include "linux/process/PollEventLoop.h"
#include "linux/process/SystemClock.h"
#include "linux/rights/LinuxAuthorization.h"
#include "linux/settings/LinuxPreferencesStore.h"
#include "ports/Platform.h"
#include "ports/window/WindowPlatform.h"

namespace installer {

/// A machine with an empty disk of its own, for the core's objects to be made on: they then say
/// what they know of a product, and find nothing of the maker's own machine. The disk is a folder
/// that goes with this object.
class ScratchMachine {
  public:
    /// Both outlive this object. `login` is the name of its user.
    ScratchMachine(Bundle& bundle, SystemLog& log, const std::string& login = "maker");
    ~ScratchMachine();
    ScratchMachine(const ScratchMachine&) = delete;
    ScratchMachine& operator=(const ScratchMachine&) = delete;

    [[nodiscard]] Platform platform();
    [[nodiscard]] PollEventLoop& eventLoop() { return eventLoop_; }
    [[nodiscard]] LinuxFileManager& files() { return files_; }
    /// The disk's folder.
    [[nodiscard]] const std::string& disk() const { return disk_; }
    /// The disk stays when this object goes.
    void keepDisk() { isKept_ = true; }

  private:
    std::string disk_;
    bool isKept_ = false;
    Bundle& bundle_;
    SystemLog& log_;
    LinuxSearchPaths searchPaths_;
    LinuxBundles bundles_;
    LinuxFileManager files_;
    PollEventLoop eventLoop_;
    LinuxFileQueries fileQueries_;
    LinuxChildProcesses processes_;
    LinuxAuthorizations authorizations_;
    LinuxPreferencesStore preferences_;
    LinuxApplicationDatabase applications_;
    TextAlerts alerts_;
    SystemClock clock_;
    NotificationCenter notifications_;
};

}  // namespace installer
