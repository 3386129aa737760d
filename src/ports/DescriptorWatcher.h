#pragma once

#include <functional>

#include "foundation/observers/Subscription.h"

namespace installer {

/// Calls back when descriptors become readable. Event loops implement it, so that the adapters
/// work with any of them.
class DescriptorWatcher {
  public:
    virtual ~DescriptorWatcher() = default;

    /// Calls `whenReadable` in each turn of the loop in which a read from the descriptor would not
    /// block, at its end and after an error too. The handle must be destroyed before the
    /// descriptor is closed. The callback may destroy any handle, its own included.
    [[nodiscard]] virtual Subscription watch(int descriptor,
                                             std::function<void()> whenReadable) = 0;
};

}  // namespace installer
