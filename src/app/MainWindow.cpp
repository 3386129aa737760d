#include "app/MainWindow.h"

#include "ports/window/InterfaceLoader.h"

namespace installer {

MainWindow::MainWindow(Interface& interface)
    : mainWindow(interface.window(mainWindowPart)),
      dynamicView(interface.view("dynamicView")),
      stepIndicatorView(interface.view("stepIndicatorView")),
      licenseView(interface.view("licenseView")),
      hostsView(interface.view("hostsView")),
      rtfView(interface.view("rtfView")),
      installFilesView(interface.view("installFilesView")),
      registerView(interface.view("registerView")),
      foundHostsController(interface.list("foundHostsController")),
      installProgress(interface.progressIndicator("installProgress")) {}

std::optional<std::string> missingPartOfMainWindow(Interface& interface) {
    if (!interface.window(mainWindowPart)) return mainWindowPart;
    for (const char* view : neededViewsOfMainWindow) {
        if (!interface.view(view)) return view;
    }
    return std::nullopt;
}

}  // namespace installer
