#pragma once

#include <cstdint>
#include <string>

namespace installer {

/// Told while the bytes of an item move, by the file manager and by the administrator's copy
/// alike, and from time to time while the administrator is asked or works: whoever shows progress
/// can keep a window alive with it. What it does must be short, and must neither start another
/// file operation nor ask the administrator for anything.
class ProgressSink {
  public:
    virtual ~ProgressSink() = default;

    /// `bytes` more have been copied since the last call; 0 says only that it goes on.
    virtual void bytesCopied(std::uint64_t bytes) = 0;

    /// A file within the item is copied next, with that name. Not every copy tells this.
    virtual void fileBegins(const std::string& /*name*/) {}
};

}  // namespace installer
