#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/HostModel.h"
#include "wizard/StepModel.h"

namespace installer {

struct Platform;

/// The host-selection step's model: the step's texts and the hosts of this machine, which the
/// constructor searches for. It finds Photoshop releases only, without Elements. The only other
/// host is the custom folder, which is added at run time.
class HostsModel : public StepModel {
  public:
    /// Searches the machine. Blocks for up to one and a half seconds for each paths file that
    /// cannot be opened. The platform is not kept.
    explicit HostsModel(Platform& platform);

    /// Every host that was discovered or added, installed or not, in that order. A release that
    /// has both a paths file and a settings file is there twice.
    [[nodiscard]] const std::vector<HostModel>& hostsArray() const { return hostsArray_; }

    /// The installed hosts in display order; hosts of equal order in the order of discovery.
    /// Empty if a host of the list lacks one of the two properties, since the sort then fails.
    [[nodiscard]] std::vector<HostModel> foundHosts() const;

    /// The hosts whose scripts and panels a custom install could copy. Always empty: a custom
    /// install installs the plug-in only.
    [[nodiscard]] std::vector<HostModel> scriptsOrPanelsHosts() const;

    void addHostAtRuntime(HostModel host);
    /// Removes every entry that is the same host object.
    void removeHostAtRuntime(const HostModel& host);

    [[nodiscard]] std::optional<std::string> mainLabelText() const override;
    [[nodiscard]] std::string stepIndicatorLabelText() const override;
    [[nodiscard]] PlainOrStyledText informativeText() const override;
    [[nodiscard]] const std::string& customInstallBrowseButtonText() const;
    [[nodiscard]] const std::string& customInstallPathLabelText() const;
    [[nodiscard]] const std::string& customInstallButtonText() const;
    [[nodiscard]] const std::string& customInstallCheckBoxText() const;
    [[nodiscard]] const std::string& customInstallHostsExplanationText() const;

  private:
    void discoverHosts(Platform& platform);
    void addHostOfPathsFile(Platform& platform, const std::string& path);
    void addHostOfSettingsFile(Platform& platform, const std::string& name);

    std::string mainLabelText_;
    std::string stepIndicatorLabelText_;
    std::vector<HostModel> hostsArray_;
    std::string informativeText_;
    std::string customInstallBrowseButtonText_;
    std::string customInstallPathLabelText_;
    std::string customInstallButtonText_;
    std::string customInstallCheckBoxText_;
    std::string customInstallHostsExplanationText_;
};

}  // namespace installer
