#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "ports/window/InterfaceOwner.h"
#include "ports/window/WindowPlatform.h"

namespace installer {

/// What a description can name, and what the core asks it for.
struct DescriptionNames {
    std::function<bool(std::string_view)> hasProperty;
    std::function<bool(std::string_view)> hasAction;
    std::set<std::string> neededWidgets;  ///< without them nobody could use the window
    std::set<std::string> usedWidgets;    ///< without one of them something is not shown
};

/// The names of each description of the installer, by the description's name. They are taken from
/// the controllers behind the descriptions, made on `platform` for that, so no list can differ from
/// what the installer does. The functions work as long as the object is there.
class WindowNames {
  public:
    explicit WindowNames(const Platform& platform);
    ~WindowNames();
    WindowNames(const WindowNames&) = delete;
    WindowNames& operator=(const WindowNames&) = delete;

    /// Null for a description that the installer never loads.
    [[nodiscard]] const DescriptionNames* of(const std::string& description) const;

    /// The object behind the description.
    [[nodiscard]] InterfaceOwner& owner(const std::string& description);

  private:
    struct Controllers;

    std::unique_ptr<Controllers> controllers_;
    std::map<std::string, DescriptionNames> names_;
};

}  // namespace installer
