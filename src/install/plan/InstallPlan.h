#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/values/Paths.h"
#include "hosts/HostModel.h"

namespace installer {

class ProgressSink;
struct Platform;

/// The rule that takes an item of the payload.
enum class InstallRule {
    mirrorPackage,    ///< a package anywhere in the disk mirror
    productFolder,    ///< a file or folder in the mirrored folder of one of the maker's products
    hostApplication,  ///< into the folder of a host application
    hostPlugIns,      ///< into the plug-in folder of a host, or into a custom folder
    lightroom,        ///< into the user's folder for Lightroom
};

/// One item that a run installs: a file, a link, or a folder that is copied whole.
struct PlannedItem {
    std::string source;       ///< in the payload
    std::string destination;  ///< on the target volume
    InstallRule rule = InstallRule::mirrorPackage;
    std::optional<std::size_t> host;  ///< index into the plan's hosts; nullopt for the disk mirror
    bool isPackage = false;
    std::uint64_t bytes = 0;  ///< that a copy moves; a file with several names in it counts once

    /// Made when it is missing.
    [[nodiscard]] std::string destinationFolder() const { return parentPath(destination); }

    friend bool operator==(const PlannedItem&, const PlannedItem&) = default;
};

/// Why an entry of the payload is never installed, whatever the hosts.
enum class LeftOutReason {
    hidden,             ///< its name begins with a dot; a hidden folder is one entry
    unknownEntry,       ///< directly in the payload, and none of its four folders
    outsideProducts,    ///< a plain file of the disk mirror, outside the product folders
    linkOrSpecialFile,  ///< a link, FIFO, device or socket that is no part of a larger item
    unreadableFolder,   ///< what is in it is not known; it can lie in an item that is copied whole
};

/// An entry of the payload that no rule takes, or a folder of it that cannot be read.
struct LeftOutEntry {
    std::string path;
    LeftOutReason reason = LeftOutReason::hidden;

    friend bool operator==(const LeftOutEntry&, const LeftOutEntry&) = default;
};

/// What a run will do, as a plain value: what it copies, whereto and by which rule, in that order,
/// and what of the payload it leaves out. It depends on the payload, the names of the maker, the
/// target volume and the hosts alone. Whether a destination exists and may be replaced is decided
/// when the item is installed.
struct InstallPlan {
    std::string payloadFolder;
    bool hasPayload = false;         ///< whether there is anything at `payloadFolder`
    std::vector<HostModel> hosts;    ///< in the order of the run
    std::vector<PlannedItem> items;  ///< the disk mirror's first, then those of each host in turn
    std::vector<LeftOutEntry> leftOut;
    /// Items whose destination lies in a folder of the system: they are not installed, and the run
    /// has failed. They are none of `items`.
    std::vector<PlannedItem> refused;

    /// The items of the disk mirror: the packages, then the product folders one after the other.
    [[nodiscard]] std::span<const PlannedItem> mirrorItems() const;
    /// The items of the host at that place of `hosts`.
    [[nodiscard]] std::span<const PlannedItem> itemsOf(std::size_t host) const;
    /// The bytes of all items. What is copied for two hosts counts twice.
    [[nodiscard]] std::uint64_t totalBytes() const;
};

/// Makes the plan of a run for these hosts, selected or not. Reads each tree of the payload once
/// and changes nothing. What cannot be read is passed over. Tells `progress`, when one is given,
/// from time to time that it goes on.
[[nodiscard]] InstallPlan makeInstallPlan(Platform& platform, const std::vector<HostModel>& hosts,
                                          ProgressSink* progress = nullptr);

/// What the rule or the reason says, as a sentence for people, in English.
[[nodiscard]] std::string_view description(InstallRule rule);
[[nodiscard]] std::string_view description(LeftOutReason reason);

}  // namespace installer
