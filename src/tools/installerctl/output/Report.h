#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace installer {

/// One path and what there is to say about it.
struct PathNote {
    std::string path;
    std::string reason;
};

struct ReportedHost {
    std::string name;
    std::string user;
    std::string application;
    std::string plugIns;
    std::string refused;  ///< why nothing is installed into it; empty for a host that is used
};

struct ReportedItem {
    std::string source;  ///< below the payload; empty where only the disk is known
    std::string destination;
    std::string rule;
    std::string host;  ///< empty for an item of the machine
    std::string user;  ///< the host's
    std::string
        action;  ///< "new", "replace", "same" or "remove"; empty where nothing is to be done
    std::string result;                 ///< how it went, or how it is; empty for what was not tried
    std::vector<PathNote> differences;  ///< entries in it that are not as they must be
    std::vector<std::string> lost;      ///< what a user put into it and a run would remove
};

struct ReportedSpace {
    std::string folder;  ///< of the file system
    std::uint64_t needed = 0;
    std::uint64_t available = 0;
};

/// All that a verb has to say: printed for people, or as JSON. What a verb knows nothing of is
/// empty.
struct Report {
    std::string command;
    std::string identifier;
    std::string product;
    std::string version;
    bool changed = false;
    std::string installedVersion;  ///< by the receipt
    std::string since;
    std::string basis;    ///< what a verification compares with, or the status is known from
    std::string receipt;  ///< "new", "replace" or "same", and what has become of it
    std::vector<std::string> users;
    std::vector<ReportedHost> hosts;
    std::vector<ReportedItem> items;
    std::vector<PathNote> leftOut;
    std::vector<ReportedSpace> space;
    std::vector<PathNote> kept;
    std::vector<std::string> removed;
    std::vector<PathNote> failed;
    std::string summary;  ///< one line
};

/// One JSON object, as docs/installerctl.schema.json describes it, with a line end.
[[nodiscard]] std::string jsonOf(const Report& report, int exitStatus);

/// The lines for people. Colours and alignment only on a terminal; then every line is cut to no
/// width: a path that is cut cannot be copied.
[[nodiscard]] std::string textOf(const Report& report, bool onTerminal, bool colored);

}  // namespace installer
