#pragma once

#include <memory>
#include <string>

#include "ports/window/InterfaceOwner.h"
#include "ports/window/View.h"

namespace installer {

/// What was made from an interface description: views whose controls are bound to the owner. Each
/// is found by its name in the description, and is null when there is none of that name and type.
/// Destroying this ends the bindings; the views live as long as the window that they were put into.
class Interface {
  public:
    virtual ~Interface() = default;

    [[nodiscard]] virtual std::shared_ptr<Window> window(const std::string& name) = 0;
    [[nodiscard]] virtual std::shared_ptr<View> view(const std::string& name) = 0;
    [[nodiscard]] virtual std::shared_ptr<TextField> textField(const std::string& name) = 0;
    [[nodiscard]] virtual std::shared_ptr<ImageView> imageView(const std::string& name) = 0;
    [[nodiscard]] virtual std::shared_ptr<ListSelection> list(const std::string& name) = 0;
    [[nodiscard]] virtual std::shared_ptr<ProgressIndicator> progressIndicator(
        const std::string& name) = 0;
};

/// Makes the views from the descriptions that the running bundle carries.
class InterfaceLoader {
  public:
    virtual ~InterfaceLoader() = default;

    /// The interface of that name, or null, with a line in the system log, when its description is
    /// missing or broken. The owner outlives what is returned.
    [[nodiscard]] virtual std::unique_ptr<Interface> load(const std::string& name,
                                                          InterfaceOwner& owner) = 0;
};

}  // namespace installer
