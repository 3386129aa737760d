#pragma once

namespace installer {

/// Makes the process robust against how it was started; called first in `main`. Standard streams
/// that were closed are opened on /dev/null, so that no file of the installation ever takes their
/// place; a reader of our output that goes away cannot end the process in the middle; and children
/// can be waited for, whatever the parent did with their signal.
void prepareProcess();

}  // namespace installer
