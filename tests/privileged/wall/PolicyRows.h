#pragma once

// The policy as a table of its own: what an installer may ask for, written down here once more.

#include <ostream>
#include <string>
#include <vector>

#include <sys/types.h>

#include "privileged/wall/Policy.h"

namespace installer::test {

using ToolArguments = std::vector<std::string>;

inline const std::string somePath = "/some/where";
inline const std::string otherPath = "/other";

/// One tool with one shape of arguments, and what the helper does then.
struct PolicyRow {
    const char* name;
    std::string tool;
    ToolArguments arguments;
    Action action;
    mode_t mode;
};
inline void PrintTo(const PolicyRow& row, std::ostream* out) {
    *out << row.name;
}

inline const std::vector<PolicyRow>& policyRows() {
    static const std::string registration =
        "/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/"
        "LaunchServices.framework/Versions/A/Support/lsregister";
    static const std::vector<PolicyRow> rows = {
        {"mkdir", "/bin/mkdir", {"-m775", "-p", somePath}, Action::makeFolders, 0775},
        {"chown", "/usr/sbin/chown", {"-R", "nobody:admin", somePath}, Action::setOwner, 0},
        {"rm", "/bin/rm", {"-fR", somePath}, Action::remove, 0},
        {"cp", "/bin/cp", {"-R", otherPath, somePath}, Action::copy, 0},
        {"chmodOfItems", "/bin/chmod", {"-R", "0775", somePath}, Action::setMode, 0775},
        {"chmodOfTheIdentifier", "/bin/chmod", {"-R", "0664", somePath}, Action::setMode, 0664},
        {"chmodOfTheLog", "/usr/sbin/chmod", {"-R", "0644", somePath}, Action::setMode, 0644},
        {"touch", "/usr/bin/touch", {somePath}, Action::touch, 0},
        {"xattr",
         "/usr/bin/xattr",
         {"-dr", "com.apple.quarantine", somePath},
         Action::removeQuarantine,
         0},
        {"lsregister", registration, {"-apps"}, Action::refreshDesktopDatabase, 0},
    };
    return rows;
}

inline bool isPath(const std::string& argument) {
    return argument == somePath || argument == otherPath;
}

}  // namespace installer::test
