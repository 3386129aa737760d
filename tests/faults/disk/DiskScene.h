#pragma once

#include <string>

#include <sys/types.h>

#include "tests/faults/engine/FaultScene.h"

namespace installer::test {

/// Makes everything of the tree below the folder; what lies in the home folder belongs to `user`.
void makeOnDisk(const DiskTree& tree, const std::string& folder, uid_t user);

/// What is in the folder, as a tree whose paths, and those in its files, begin at the folder.
[[nodiscard]] DiskTree treeOnDisk(const std::string& folder);

}  // namespace installer::test
