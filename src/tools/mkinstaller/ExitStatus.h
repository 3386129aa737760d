#pragma once

namespace installer {

/// How mkinstaller ends.
enum class ExitStatus {
    fine = 0,         ///< warnings are allowed
    errorsFound = 1,  ///< the product is not as it must be, or the work failed
    wrongUse = 2,     ///< the command line cannot be obeyed
};

}  // namespace installer
