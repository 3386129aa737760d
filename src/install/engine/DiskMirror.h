#pragma once

#include <string>
#include <vector>

namespace installer {

class FileInstaller;
class PrivilegedCommands;
struct Platform;

/// The payload's folder "HD", which looks like the target disk seen from its root.
class DiskMirror {
  public:
    DiskMirror(Platform& platform, PrivilegedCommands& commands, FileInstaller& installer);

    /// Installs every package, wherever it lies, then what lies in the folders of the maker's
    /// products. Nothing else in the mirror is ever installed. Goes on after a refusal: the
    /// application database and the quarantine are then seen to all the same.
    void installFiles();

    /// What `installFiles` copies, in that order.
    [[nodiscard]] static std::vector<std::string> sources(Platform& platform);

    /// `HD` in the payload.
    [[nodiscard]] static std::string folder(Platform& platform);
    /// The maker's folder in the mirror's Application Support, which holds the product folders.
    [[nodiscard]] static std::string companyFolder(Platform& platform);

  private:
    /// A folder of one of the maker's products and what of it is copied.
    struct ProductFolder {
        std::string path;
        std::vector<std::string> items;
    };

    [[nodiscard]] static std::vector<std::string> packages(Platform& platform);
    [[nodiscard]] static std::vector<ProductFolder> productFolders(Platform& platform);
    void installPackage(const std::string& package);
    [[nodiscard]] std::string targetPath(const std::string& path) const;

    Platform& platform_;
    PrivilegedCommands& commands_;
    FileInstaller& installer_;
    std::string folder_;
};

}  // namespace installer
