#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include <sys/types.h>

#include "foundation/values/Result.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

/// An entry with a short hidden name: a copy that is filled before it gets its final name, or a
/// folder that was moved aside before its contents are removed. It is locked while its process
/// uses it, so that one left by a dead process can be recognised. The destructor removes it.
class Temporary {
  public:
    /// An empty file, opened for writing; the process's mask applies to the mode.
    static Result<Temporary> makeFile(int parent, mode_t mode);

    /// An empty folder that only its owner can enter, opened for reading.
    static Result<Temporary> makeFolder(int parent);

    /// Moves an existing folder to a temporary name, in one step. A failure leaves it in place.
    static Result<Temporary> moveAside(int parent, const std::string& name);

    Temporary(Temporary&& other) noexcept;
    Temporary& operator=(Temporary&&) = delete;
    ~Temporary();

    [[nodiscard]] int descriptor() const { return descriptor_.get(); }

    /// The mode with which a file was made.
    [[nodiscard]] mode_t mode() const { return mode_; }

    /// Gives it its name for good. EEXIST when there is an entry of that name.
    [[nodiscard]] std::error_code publish(const std::string& name);

    /// Gives it its name for good and replaces an entry of that name, but not a folder.
    [[nodiscard]] std::error_code publishReplacing(const std::string& name);

    /// Removes it now, and tells what could not be removed.
    [[nodiscard]] std::error_code remove();

  private:
    Temporary(int parent, std::string name) : parent_(parent), name_(std::move(name)) {}
    bool lock();

    int parent_;
    std::string name_;  ///< empty once the entry is no temporary any more
    FileDescriptor descriptor_;
    mode_t mode_ = 0;
};

/// Whether a name has the form that only temporaries have.
[[nodiscard]] bool isTemporaryName(std::string_view name);

/// Removes the temporaries in the folder whose processes have died. A process reads a folder for
/// this once, however often it asks: an installation makes thousands of files in one folder.
void clearDeadTemporaries(int folder);

/// The same, even if this process has done it before.
void clearDeadTemporariesAgain(int folder);

}  // namespace installer
