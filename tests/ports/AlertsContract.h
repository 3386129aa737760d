#pragma once

#include <string>
#include <vector>

#include "ports/Alerts.h"
#include "tests/ports/Adapter.h"

namespace installer::test {

/// A user who can be asked.
class AlertsScene {
  public:
    virtual ~AlertsScene() = default;
    [[nodiscard]] virtual Alerts& alerts() = 0;
    /// The user is going to press that button of the next alert.
    virtual void willPress(const Alert& alert, std::size_t button) = 0;
};

/// What all alerts promise that somebody sees. An implementation joins with
/// INSTANTIATE_TEST_SUITE_P (`AlertsAdapters.cpp`, `window/WindowAdapters.cpp`).
class AlertsContract : public Contract<AlertsScene> {};

}  // namespace installer::test
