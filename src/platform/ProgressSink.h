#pragma once

#include <cstdint>

namespace installer {

/// Told while the bytes of an item move, by the file manager and by the administrator's copy
/// alike. What it does must be short and must not start another file operation.
class ProgressSink {
  public:
    virtual ~ProgressSink() = default;

    /// `bytes` more have been copied since the last call.
    virtual void bytesCopied(std::uint64_t bytes) = 0;
};

}  // namespace installer
