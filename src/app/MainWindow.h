#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "ports/window/View.h"

namespace installer {

class Interface;

/// The parts of the main window on which the core acts itself. Each is null when the description
/// has no such part.
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

/// The main window and the views in it without which nobody could go through the wizard.
inline constexpr const char* mainWindowPart = "mainWindow";
inline constexpr std::array<const char*, 3> neededViewsOfMainWindow = {
    "dynamicView", "forwardButton", "backwardButton"};

/// The name of a part without which nobody could go through the wizard, and which the interface
/// lacks; none when it has them all. Any other part may be missing: what it would show is not
/// shown, and the wizard works.
[[nodiscard]] std::optional<std::string> missingPartOfMainWindow(Interface& interface);

}  // namespace installer
