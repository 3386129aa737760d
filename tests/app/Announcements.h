#pragma once

#include <initializer_list>

#include "tests/app/Wizard.h"

namespace installer::test {

// What a change of step announces, in order; between the two lies what the steps do.

inline const Lines announcedBefore = {"will enableForward", "will enableBackward",
                                      "will mainLabelText", "will informativeText",
                                      "will successfulInstall"};

inline const Lines announcedAfter = {
    "will goBackwardsText", "did goBackwardsText", "will goForwardText",
    "did goForwardText",    "did enableForward",   "did enableBackward",
    "did mainLabelText",    "did informativeText", "did successfulInstall"};

inline Lines joined(std::initializer_list<Lines> parts) {
    Lines all;
    for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

}  // namespace installer::test
