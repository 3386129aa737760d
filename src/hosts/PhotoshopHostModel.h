#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace installer {

struct Platform;

/// An installation of Photoshop or Photoshop Elements. Built once, from its paths file or from its
/// name; afterwards only the selection changes. A path that could not be learnt is empty.
class PhotoshopHostModel {
  public:
    /// The host whose paths file this is; the file's name names it.
    [[nodiscard]] static PhotoshopHostModel initWithPathsFilePath(Platform& platform,
                                                                  const std::string& path);
    /// The host of that display name, with the fixed folders of the releases from 2019 on, or with
    /// the paths file in the user's preferences that has its name.
    [[nodiscard]] static PhotoshopHostModel initWithHostName(Platform& platform,
                                                             const std::string& hostName);

    [[nodiscard]] const std::string& hostName() const { return hostName_; }
    [[nodiscard]] bool hostIsInstalled() const { return hostIsInstalled_; }
    [[nodiscard]] bool hostIsSelected() const { return hostIsSelected_; }
    void setHostIsSelected(bool selected) { hostIsSelected_ = selected; }
    [[nodiscard]] const std::string& appPath() const { return appPath_; }
    [[nodiscard]] const std::string& plugInPath() const { return plugInPath_; }
    [[nodiscard]] const std::string& scriptsPath() const { return scriptsPath_; }
    [[nodiscard]] const std::string& panelsPath() const { return panelsPath_; }

    /// The file through which the host was found; empty if nobody said.
    [[nodiscard]] const std::string& sourceFile() const { return sourceFile_; }
    void setSourceFile(const std::string& path) { sourceFile_ = path; }

    [[nodiscard]] std::uint32_t version() const;
    [[nodiscard]] std::uint32_t minorVersion() const;
    [[nodiscard]] bool isElements() const;
    /// The version, or 0 for Elements.
    [[nodiscard]] std::uint32_t photoshopVersionFromDisplayName() const;
    /// Both compare `version` unsigned; Elements has no rule of its own on purpose.
    [[nodiscard]] bool hostIsAtLeastVersionCS(std::int32_t version) const;
    [[nodiscard]] bool hostIsAtLeastVersionElements(std::int32_t version) const;

    [[nodiscard]] bool shouldInstallScripts() const;
    [[nodiscard]] bool shouldInstallPanels() const;
    /// Ascending in the list of hosts.
    [[nodiscard]] std::uint64_t displaySortOrder() const;

  private:
    explicit PhotoshopHostModel(std::string hostName) : hostName_(std::move(hostName)) {}

    void initPathsFromHostName(Platform& platform);
    void initPathsFromPathFile(Platform& platform, const std::string& path);

    std::string appPath_;
    std::string plugInPath_;
    std::string scriptsPath_;
    std::string hostName_;
    std::string panelsPath_;
    bool hostIsInstalled_ = false;
    bool hostIsSelected_ = true;
    std::string sourceFile_;
};

}  // namespace installer
