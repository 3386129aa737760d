#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ports/Bundle.h"
#include "ports/SystemLog.h"
#include "ports/window/InterfaceLoader.h"
#include "qt/binding/Binding.h"

namespace installer {

/// Makes views from the `.ui` descriptions in the bundle. The README of this folder lists the
/// dynamic properties that bind their controls.
class QtInterfaceLoader final : public InterfaceLoader {
  public:
    /// Calls `openLink` with the address of each link that the user clicks.
    QtInterfaceLoader(const Bundle& bundle, SystemLog& log, OpenLink openLink);

    [[nodiscard]] std::unique_ptr<Interface> load(const std::string& name,
                                                  InterfaceOwner& owner) override;

  private:
    [[nodiscard]] std::unique_ptr<Interface> refuse(const std::string& name,
                                                    const std::string& reason);

    const Bundle& bundle_;
    SystemLog& log_;
    OpenLink openLink_;
};

}  // namespace installer
