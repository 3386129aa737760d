#pragma once

#include <string>
#include <vector>

namespace installer {

class DestinationFolders;
class HostModel;
struct InstallRun;
struct Platform;

/// The rows of the list for these hosts, on this disk; empty if there is nothing to list.
[[nodiscard]] std::string externalEditorRows(Platform& platform,
                                             const std::vector<HostModel>& foundHosts);

/// The list of external editors of the maker's photo editor Prismor X. It has one row for the
/// newest Photoshop of the given hosts, and one for each of two sibling products if it is
/// installed. A quiet run gives no hosts; a window gives the found ones, but nothing enables its
/// check box today.
class ExternalEditorList {
  public:
    ExternalEditorList(Platform& platform, InstallRun& run, DestinationFolders& folders)
        : platform_(platform), run_(run), folders_(folders) {}

    /// Removes the old list and writes a new one. Without a row there is no file afterwards. A
    /// failure to write is not reported.
    void configurePrismorExternalEditors(const std::vector<HostModel>& foundHosts);

  private:
    Platform& platform_;
    InstallRun& run_;
    DestinationFolders& folders_;
};

}  // namespace installer
