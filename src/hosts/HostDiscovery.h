#pragma once

#include <string>
#include <vector>

#include "hosts/HostModel.h"
#include "hosts/NotOfferedHost.h"

namespace installer {

struct Platform;

/// The search of a machine for hosts. Only Photoshop releases are found, Elements excepted; the
/// other kinds are never made here. The platform outlives this object.
class HostDiscovery {
  public:
    /// Reads the custom folder that an earlier run remembered, and drops it: the list of hosts
    /// never starts with a custom folder. It is read before anything else, texts included.
    explicit HostDiscovery(Platform& platform);

    /// Every release that has a paths file or a settings file, installed or not: those with paths
    /// files in Adobe's support folder, with paths files in the preferences folder, and with
    /// settings files there. A release with both files is there twice. Logs each paths file.
    /// Blocks for up to one and a half seconds for each paths file that cannot be opened.
    [[nodiscard]] std::vector<HostModel> discoverHosts();

    /// What the last search found and does not offer, each name once, in the order in which it was
    /// found. The system log has named each.
    [[nodiscard]] const std::vector<NotOfferedHost>& notOffered() const { return notOffered_; }

  private:
    void noteNotOffered();
    void addNotOffered(const std::string& name, NotOfferedHost::Reason reason);
    void addHostOfPathsFile(const std::string& path);
    void addHostOfSettingsFile(const std::string& name);

    Platform& platform_;
    std::vector<HostModel> hosts_;
    std::vector<NotOfferedHost> notOffered_;
};

}  // namespace installer
