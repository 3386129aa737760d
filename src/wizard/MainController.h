#pragma once

#include <vector>

#include "foundation/observers/Observable.h"

namespace installer {

class HostModel;

/// What the steps ask of the main window's controller. Steps announce changes of its computed
/// properties on it, by name.
class MainController : public Observable {
  public:
    /// All hosts of the list, and those of them that the user has selected, in list order.
    [[nodiscard]] virtual std::vector<HostModel> foundHosts() const = 0;
    [[nodiscard]] virtual std::vector<HostModel> selectedHosts() const = 0;

    [[nodiscard]] virtual bool shouldConfigurePrismorExternalEditors() const = 0;

    /// The last run of the install step has ended without a failed item and without a refusal.
    [[nodiscard]] virtual bool successfulInstall() const = 0;

    // Options of the host-selection step. Setting one announces nothing on this object.
    [[nodiscard]] virtual bool isCustomInstallAllowed() const = 0;
    virtual void setIsCustomInstallAllowed(bool allowed) = 0;
    [[nodiscard]] virtual bool isCustomInstallChosen() const = 0;
    virtual void setIsCustomInstallChosen(bool chosen) = 0;
    [[nodiscard]] virtual bool customInstallRecommended() const = 0;

    /// Adds the custom folder's host to the list of found hosts and selects its row; removes it.
    virtual void customHostAdded(const HostModel& host) = 0;
    virtual void customHostRemoved(const HostModel& host) = 0;

    /// Goes to the next step, as the forward button does.
    virtual void nextView(const void* sender) = 0;
};

}  // namespace installer
