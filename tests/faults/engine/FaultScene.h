#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "ports/FileManager.h"

namespace installer::test {

/// One entry of a disk.
struct DiskEntry {
    FileType type = FileType::regular;
    std::string contents = {};  ///< of a regular file, or a link's target
    std::uint32_t permissions = 0644;
    std::string owner = {};

    friend bool operator==(const DiskEntry&, const DiskEntry&) = default;
};

/// A whole disk: its entries by their paths on it.
using DiskTree = std::map<std::string, DiskEntry>;

/// Something that a run is to install.
struct ExpectedItem {
    std::string source;
    std::string destination;
    bool isOfAHost = false;
    /// Another item, or the same one for another host, takes its place later in the run.
    bool isReplacedLater = false;
};

/// A disk with the bundle of the installer of a product, its payload for everybody, two Photoshops,
/// and what earlier installations have left: older and newer items, some of them folders with what
/// the new ones do not have, a link in the place of a bundle, a list of external editors, stale
/// manifests, and a longer installer log.
namespace fault_scene {

inline const std::string installerLog = "/Library/Application Support/Acme/Filters 2 Installer.log";
inline const std::string editorList =
    "/Library/Application Support/Acme/Prismor X/ExternalEditors.csv";
inline const std::string siblingEditor = "/Applications/Quarrytone Inkvale 4.app";
inline const std::string payload = "/Installer.app/Contents/Resources/files";
inline const std::string home = "/Users/tester";
inline const std::string pickedFolder = "/Volumes/Pictures/My Plug-Ins";
inline const std::vector<std::string> staleManifests = {
    home + "/Library/Application Support/Acme/manifest.xml",
    home + "/Library/Application Support/Acme/Filters 1/Looks/manifest.xml"};

[[nodiscard]] DiskTree disk();

/// What the rules of an installation say that a run of this payload installs, in no order.
[[nodiscard]] std::vector<ExpectedItem> items();

/// The list of external editors that belongs to this disk.
[[nodiscard]] std::string newEditorList();

}  // namespace fault_scene

}  // namespace installer::test
