#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "install/engine/DestinationFolders.h"
#include "install/engine/FileErrorAlerts.h"
#include "install/engine/ReplaceDecision.h"
#include "install/rights/PrivilegedCommands.h"

namespace installer {

struct PlannedItem;

/// Puts items of the payload where they belong, replacing what is there.
class FileInstaller {
  public:
    using ShowText = std::function<void(const std::string&)>;

    /// `showText` is called with the text for each item before anything happens to it.
    FileInstaller(Platform& platform, InstallRun& run, PrivilegedCommands& commands,
                  DestinationFolders& folders, FileErrorAlerts& errors, ShowText showText);

    /// Installs each item into the folder `toPath`, which is made if it is missing. An existing
    /// item of the same name is removed first; its contents are never merged with the new one's.
    ///
    /// With `alwaysInstall` false, an existing item may be kept: `ReplaceDecision` compares the
    /// versions if `isBundle`, else the modification dates. Every caller passes true, so today no
    /// run keeps an item.
    ///
    /// Each file operation is tried as the user first, then as the administrator. An item that
    /// cannot be installed is reported, and the next one follows. Refused administrator rights end
    /// the operation at once, even if they were refused before it.
    void installSourceFiles(const std::vector<std::string>& sources, const std::string& toPath,
                            bool isBundle, bool alwaysInstall);

    /// The same for items of a plan, which go into the folder of the first one, and always install.
    /// The caller confirms them, at the latest after the last one: until then, those that came last
    /// may be missing among the installed paths.
    void install(std::span<const PlannedItem> items);
    void confirm();

  private:
    using Outcome = PrivilegedCommands::Outcome;

    struct Source {
        const std::string* path;             ///< somebody else's
        std::optional<std::uint64_t> bytes;  ///< nullopt if nobody has measured it
    };

    void installEach(const std::vector<Source>& sources, const std::string& toPath, bool isBundle,
                     bool alwaysInstall);
    void beginItem(const Source& source);
    [[nodiscard]] bool mayReplace(const std::string& source, const std::string& destination,
                                  bool isBundle) const;
    [[nodiscard]] Outcome removeExisting(const std::string& destination);
    /// Whether the item is there now; nullopt if the rights were refused.
    [[nodiscard]] std::optional<bool> copyItem(const std::string& source,
                                               const std::string& destination);
    [[nodiscard]] std::optional<bool> copyHiddenItem(const std::string& source,
                                                     const std::string& destination);
    /// Whether the user may not even look whether the item is there.
    [[nodiscard]] bool isHidden(const std::string& destination) const;
    void awaitItem(const std::string& source, const std::string& destination);

    Platform& platform_;
    InstallRun& run_;
    PrivilegedCommands& commands_;
    DestinationFolders& folders_;
    FileErrorAlerts& errors_;
    ReplaceDecision decision_;
    ShowText showText_;
};

}  // namespace installer
