#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/installerctl/records/EntryRecord.h"

namespace installer {

/// What was installed, for whom and from what: all that is needed to verify it and to take it back.
/// Paths are real ones.
struct Receipt {
    struct User {
        std::string login;
        std::string home;  ///< empty for a user without one
    };
    struct Host {
        std::string name;
        std::string user;
        std::string application;  ///< its folder
        std::string plugIns;      ///< the folder that receives the plug-in
    };
    struct Item {
        std::string destination;
        std::string source;  ///< below the payload
        std::string rule;
        std::string host;  ///< the host's name; empty for an item of the machine
        std::string user;  ///< the host's user; empty for an item of the machine
    };

    std::string identifier;
    std::string company;
    std::string product;
    std::string version;
    /// False while a run is going on, and after one that did not get to its end: a path may then be
    /// recorded twice, as it was and as it was to be.
    bool isComplete = false;
    std::string since;      ///< when it was first installed, as 2026-01-31T12:00:00Z
    std::string installed;  ///< when this version was
    std::string bundle;     ///< the hash of the payload and the names
    std::vector<User> users;
    std::vector<Host> hosts;
    std::vector<Item> items;
    std::vector<EntryRecord> files;        ///< every entry of the items
    std::vector<std::string> folders;      ///< that were made for the items
    std::vector<EntryRecord> menuEntries;  ///< of the users' desktops
    std::string log;                       ///< the installer log
};

/// How the paths of a receipt change between the disk, as its own system sees it, and this one.
using PathMapping = std::function<std::string(const std::string& path)>;

/// The receipt's text: JSON, with paths as the disk's own system sees them. A text that is not
/// UTF-8 is written as "hex:" and its bytes.
[[nodiscard]] std::string receiptText(const Receipt& receipt, const PathMapping& asSeenOnDisk);

/// Either a receipt, or why there is none.
struct ReadReceipt {
    Receipt receipt;
    std::string problem;  ///< empty if the receipt is one
};

/// Reads a text that anybody may have written. Every field must be there and have its type, every
/// path must be absolute and plain, and no path may lead into a folder of the system
/// (`isForbidden`).
[[nodiscard]] ReadReceipt parsedReceipt(
    std::string_view text, const PathMapping& onDisk,
    const std::function<bool(const Receipt& receipt, const std::string& path)>& isForbidden);

/// Whether the text can be the name of a receipt, and of nothing else: letters, digits, ".", "-"
/// and "_", and no dot at its start.
[[nodiscard]] bool isReceiptName(std::string_view identifier);

}  // namespace installer
