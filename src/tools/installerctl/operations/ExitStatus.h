#pragma once

namespace installer {

/// How installerctl ends. README.md and installerctl(1) explain each.
enum class ExitStatus {
    done = 0,            ///< done, or nothing to do
    itemsFailed = 1,     ///< items failed, or a receipt is not to be trusted
    wrongUse = 2,        ///< the command line cannot be obeyed
    differences = 3,     ///< the plan has changes, verify found differences, remove kept files
    rightsRefused = 4,   ///< administrator rights were refused, or are needed
    locked = 5,          ///< another run is at work on this disk
    hostRuns = 6,        ///< a host is running
    noHost = 7,          ///< no host was found, and one is required
    notInstalled = 8,    ///< the product is not installed
    bundleUnusable = 9,  ///< the program is in no bundle, or the bundle has no payload
    downgrade = 10,      ///< a newer version is installed
};

}  // namespace installer
