#include "tools/mkinstaller/lint/window/WindowNames.h"

#include <memory>
#include <utility>

#include "app/MainWindow.h"
#include "app/SetupController.h"
#include "steps/hosts/HostsController.h"
#include "tools/mkinstaller/lint/window/InertWindow.h"
#include "wizard/StepIndicator.h"

namespace installer {

struct WindowNames::Controllers {
    explicit Controllers(const Platform& platform)
        : windowPlatform{{platform}, interfaces, folderPanel, workspace, clipboard},
          setup(windowPlatform),
          hosts(windowPlatform),
          indicator(StepIndicator::load(windowPlatform)) {}

    InertInterfaceLoader interfaces;
    InertFolderPanel folderPanel;
    InertWorkspace workspace;
    InertClipboard clipboard;
    WindowPlatform windowPlatform;
    SetupController setup;
    HostsController hosts;
    std::unique_ptr<StepIndicator> indicator;
};

namespace {

DescriptionNames namesOf(const BoundObject& owner) {
    return {.hasProperty = [&owner](std::string_view name) { return owner.hasProperty(name); },
            .hasAction = [&owner](std::string_view name) { return owner.hasAction(name); },
            .neededWidgets = {},
            .usedWidgets = {}};
}

}  // namespace

WindowNames::WindowNames(const Platform& platform)
    : controllers_(std::make_unique<Controllers>(platform)) {
    DescriptionNames main = namesOf(controllers_->setup);
    InertInterface interface(main.usedWidgets);
    static_cast<void>(MainWindow(interface));
    main.neededWidgets.insert(mainWindowPart);
    main.neededWidgets.insert(neededViewsOfMainWindow.begin(), neededViewsOfMainWindow.end());
    names_["MainWindow"] = std::move(main);

    DescriptionNames hosts = namesOf(controllers_->hosts);
    hosts.neededWidgets.insert(HostsController::customInstallViewPart);
    hosts.usedWidgets.insert(HostsController::hostsListPart);
    names_["CustomInstall"] = std::move(hosts);

    // What the row of the step list has asked the loader for.
    DescriptionNames row = namesOf(*controllers_->indicator);
    row.usedWidgets = controllers_->interfaces.asked;
    names_["Step Indicator"] = std::move(row);
}

WindowNames::~WindowNames() = default;

const DescriptionNames* WindowNames::of(const std::string& description) const {
    const auto found = names_.find(description);
    return found == names_.end() ? nullptr : &found->second;
}

InterfaceOwner& WindowNames::owner(const std::string& description) {
    if (description == "CustomInstall") return controllers_->hosts;
    if (description == "Step Indicator") return *controllers_->indicator;
    return controllers_->setup;
}

}  // namespace installer
