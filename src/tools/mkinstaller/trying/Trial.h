#pragma once

#include <set>
#include <string>
#include <vector>

#include "install/plan/InstallPlan.h"
#include "tools/mkinstaller/lint/basis/ScratchMachine.h"
#include "tools/mkinstaller/packing/PackSource.h"

namespace installer {

/// A finished bundle and a sample disk to install it on. Nothing else of the machine is changed.
class Trial {
  public:
    /// `source` and `log` outlive this object. Throws if there is no room for the disk.
    Trial(const PackSource& source, SystemLog& log);

    /// What the installer will do on this disk.
    [[nodiscard]] const InstallPlan& plan() const { return plan_; }
    [[nodiscard]] const std::string& disk() const { return machine_.disk(); }
    /// The disk stays when this object goes.
    void keepDisk() { machine_.keepDisk(); }

    /// Runs the bundle's own installer on the disk, without a display. False if it could not be
    /// started or was ended by a signal; `messages` is what it said.
    [[nodiscard]] bool installQuietly(std::string& messages);
    /// Opens the installer's window; returns when it has closed. False if there was none.
    [[nodiscard]] bool openWindow() const;

    /// How the disk differs from the plan, a sentence each.
    [[nodiscard]] std::vector<std::string> differences() const;
    /// Files on the disk that are neither items nor were there before: the log, menu entries, lists
    /// of other programs. Paths as the disk's own system sees them.
    [[nodiscard]] std::vector<std::string> filesBesideThePlan() const;
    /// The question that is asked before the password.
    [[nodiscard]] std::string question() const;

  private:
    const PackSource& source_;
    LinuxBundle bundle_;
    ScratchMachine machine_;
    std::set<std::string> before_;
    InstallPlan plan_;
};

}  // namespace installer
