#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "ports/window/View.h"

namespace installer {

class Interface;

/// The parts of the main window that the core uses directly. Each is null if the description lacks
/// it.
struct MainWindow {
    MainWindow() = default;
    explicit MainWindow(Interface& interface);

    std::shared_ptr<Window> mainWindow;
    std::shared_ptr<View> dynamicView;  ///< shows the current step's view
    std::shared_ptr<View> stepIndicatorView;

    std::shared_ptr<View> licenseView;
    std::shared_ptr<View> hostsView;
    std::shared_ptr<View> rtfView;  ///< of the running-host check
    std::shared_ptr<View> installFilesView;
    std::shared_ptr<View> registerView;

    std::shared_ptr<ListSelection> foundHostsController;
    std::shared_ptr<ProgressIndicator> installProgress;
};

/// The main window and the views in it that the wizard cannot work without.
inline constexpr const char* mainWindowPart = "mainWindow";
inline constexpr std::array<const char*, 3> neededViewsOfMainWindow = {
    "dynamicView", "forwardButton", "backwardButton"};

/// The name of a part that the wizard cannot work without and that the interface lacks; nullopt if
/// it lacks none. Any other part may be missing: then only its content is not shown.
[[nodiscard]] std::optional<std::string> missingPartOfMainWindow(Interface& interface);

}  // namespace installer
