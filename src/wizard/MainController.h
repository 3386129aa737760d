#pragma once

#include <vector>

#include "foundation/Observable.h"

namespace installer {

class HostModel;

/// What the steps ask of the main window's controller. Steps announce changes of its computed
/// properties on it, by name.
class MainController : public Observable {
  public:
    /// All hosts that are offered, and those of them that the user wants, in list order.
    [[nodiscard]] virtual std::vector<HostModel> foundHosts() const = 0;
    [[nodiscard]] virtual std::vector<HostModel> selectedHosts() const = 0;

    [[nodiscard]] virtual bool shouldConfigurePrismorExternalEditors() const = 0;

    /// Goes to the next step, as the forward button does.
    virtual void nextView(const void* sender) = 0;
};

}  // namespace installer
