#pragma once

#include <string>
#include <vector>

namespace installer {

class DestinationFolders;
class HostModel;
struct InstallRun;
struct Platform;

/// The list of external editors that the maker's photo editor Prismor X offers: one row for the
/// newest Photoshop and one for each of two sibling products that is installed.
class ExternalEditorList {
  public:
    ExternalEditorList(Platform& platform, InstallRun& run, DestinationFolders& folders)
        : platform_(platform), run_(run), folders_(folders) {}

    /// Writes the list from scratch. With nothing to list there is no file afterwards; a file
    /// that cannot be written is not reported.
    void configurePrismorExternalEditors(const std::vector<HostModel>& foundHosts);

  private:
    [[nodiscard]] std::string photoshopRow(const std::vector<HostModel>& hosts) const;
    [[nodiscard]] std::string siblingRow(const std::string& path, const std::string& name) const;

    Platform& platform_;
    InstallRun& run_;
    DestinationFolders& folders_;
};

}  // namespace installer
