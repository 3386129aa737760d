#pragma once

#include <string>
#include <system_error>

#include "foundation/values/Result.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

/// A new file without a name, opened for writing: nobody sees it until it is published, and it
/// vanishes with its last descriptor, also when the process dies.
class NamelessFile {
  public:
    /// Made on the folder's file system. `isUnsupported` tells the error of one that has no such
    /// files.
    [[nodiscard]] static Result<NamelessFile> make(int folder);
    [[nodiscard]] static bool isUnsupported(std::error_code error);

    [[nodiscard]] int descriptor() const { return descriptor_.get(); }

    /// Gives it a name, in one step. EEXIST where there is an entry of that name.
    [[nodiscard]] std::error_code publish(int folder, const std::string& name) const;

  private:
    explicit NamelessFile(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

    FileDescriptor descriptor_;
};

}  // namespace installer
