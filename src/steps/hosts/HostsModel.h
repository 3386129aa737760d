#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/HostModel.h"
#include "hosts/NotOfferedHost.h"
#include "wizard/StepModel.h"

namespace installer {

class Bundle;
class HostDiscovery;
struct Platform;

/// The host-selection step's model: the step's texts and the list of hosts. The list is discovered
/// when the model is made, and never again; at run time only the custom folder joins it.
class HostsModel : public StepModel {
  public:
    /// Searches the machine and blocks as `HostDiscovery` does. The platform is not kept.
    explicit HostsModel(Platform& platform);

    /// Every host that was discovered or added, installed or not, in that order.
    [[nodiscard]] const std::vector<HostModel>& hostsArray() const { return hostsArray_; }

    /// The hosts that are offered, as `foundHosts` of HostLists.h chooses them from the list.
    [[nodiscard]] std::vector<HostModel> foundHosts() const;

    /// What was found and is not offered, with the reasons.
    [[nodiscard]] const std::vector<NotOfferedHost>& notOffered() const { return notOffered_; }

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
    // The discovery has read the remembered folder before the texts are read; it searches after.
    HostsModel(const Bundle& bundle, HostDiscovery discovery);

    std::string mainLabelText_;
    std::string stepIndicatorLabelText_;
    std::vector<HostModel> hostsArray_;
    std::vector<NotOfferedHost> notOffered_;
    std::string informativeText_;
    std::string customInstallBrowseButtonText_;
    std::string customInstallPathLabelText_;
    std::string customInstallButtonText_;
    std::string customInstallCheckBoxText_;
    std::string customInstallHostsExplanationText_;
};

}  // namespace installer
