#pragma once

#include <cstddef>
#include <system_error>
#include <vector>

#include <sys/types.h>

#include "privileged/system/FileDescriptor.h"

namespace installer {

/// The opened folders from the top of a tree down to the one being worked on. Only the top and
/// the last few are kept open, so that no depth of a tree uses up the process's descriptors; one
/// that was closed is opened again through its child's "..", and must still be the same folder.
class FolderChain {
  public:
    void push(FileDescriptor folder);

    /// Makes `parent()` usable. ESTALE if the current folder was moved meanwhile. Needs
    /// a depth of two.
    [[nodiscard]] std::error_code openParent();

    void pop() { folders_.pop_back(); }

    [[nodiscard]] std::size_t depth() const { return folders_.size(); }
    [[nodiscard]] int current() const { return folders_.back().descriptor.get(); }
    [[nodiscard]] int parent() const { return folders_[folders_.size() - 2].descriptor.get(); }

  private:
    struct Folder {
        FileDescriptor descriptor;
        dev_t device = 0;  ///< known once the descriptor was closed
        ino_t number = 0;
    };
    static void close(Folder& folder);

    std::vector<Folder> folders_;
};

}  // namespace installer
