#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "linux/rights/FolderLines.h"
#include "linux/rights/HelperCommand.h"
#include "ports/Authorization.h"

namespace installer {

class FinishedTree;

/// How authorizations reach the administrator.
struct AdministratorAccess {
    HelperPlace helper;  ///< the privileged helper, and what it is told
    /// One line: which product asks for the administrator's rights, and why.
    std::string reason;
    /// The words around the folders that the run may change.
    FolderWords folderWords = {};
    /// Shows a line to the user and in the log: before the user is asked, the reason and each of
    /// these folders; another one if the helper is lost.
    std::function<void(std::string_view line)> announce;
    /// What is known of the last copy that this process made as root. Null for nothing.
    const FinishedTree* finishedTree = nullptr;
    /// What the machine offers; looked at when an authorization is obtained.
    std::function<AdministratorMeans()> means = AdministratorMeans::current;
};

/// Authorizations that run their tools in the privileged helper: started through polkit where there
/// is one, else through sudo. Each has a helper of its own, from its first command until it is
/// destroyed. When this process is root, the same tools run in it, and no helper is started.
class LinuxAuthorizations : public Authorizations {
  public:
    explicit LinuxAuthorizations(AdministratorAccess access) : access_(std::move(access)) {}
    [[nodiscard]] std::unique_ptr<Authorization> create() override;
    [[nodiscard]] LinkRefusal linkRefusal(const std::string& folder) const override;

  private:
    AdministratorAccess access_;
};

}  // namespace installer
