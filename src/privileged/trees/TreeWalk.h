#pragma once

#include <string>
#include <system_error>

#include "foundation/values/Result.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

/// What is done with the entries of a tree. Every entry is named by its opened parent folder.
class TreeVisitor {
  public:
    virtual ~TreeVisitor() = default;

    /// Opens a folder whose contents are to be visited, for reading and without following a link.
    [[nodiscard]] virtual Result<FileDescriptor> enterFolder(int parent, const std::string& name);

    /// Handles an entry that is no folder; `type` is a DT_ constant.
    [[nodiscard]] virtual std::error_code visitEntry(int parent, const std::string& name,
                                                     unsigned char type) = 0;

    /// Handles a folder after its contents: so what a walk gives away or locks up is never
    /// needed again.
    [[nodiscard]] virtual std::error_code leaveFolder(int parent, const std::string& name,
                                                      int folder) = 0;
};

enum class OnFailure { goOn, stop };

/// Visits the entry and everything in it without following links. The first failure is returned;
/// with `goOn` the rest is visited all the same. Any depth is fine: neither the stack nor the
/// number of open descriptors grows with it.
[[nodiscard]] std::error_code walkTree(int parent, const std::string& name, TreeVisitor& visitor,
                                       OnFailure onFailure);

}  // namespace installer
