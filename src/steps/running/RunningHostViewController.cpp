#include "steps/running/RunningHostViewController.h"

#include <optional>
#include <utility>
#include <vector>

#include "foundation/text/Format.h"
#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "hosts/HostModel.h"
#include "ports/Bundle.h"
#include "ports/FileManager.h"
#include "ports/SystemLog.h"
#include "ports/window/View.h"
#include "ports/window/WindowPlatform.h"
#include "ports/window/Workspace.h"
#include "product/PlugInFilesModel.h"
#include "steps/running/RunningHostViewModel.h"
#include "wizard/MainController.h"

namespace installer {

namespace {

constexpr const char* photoshop = "Photoshop";

}  // namespace

bool isApplicationOfHost(const std::string& application, const std::string& word) {
    if (!contains(application, word)) return false;
    // Deliberate: an application named "Adobe Photoshop CC 2018" does not count.
    if (word == photoshop) return application.starts_with(photoshop);
    return !contains(application, "Installer");
}

RunningHostViewController::RunningHostViewController(WindowPlatform& platform)
    : platform_(platform) {}

void RunningHostViewController::setModel(std::shared_ptr<RunningHostViewModel> model) {
    model_ = std::move(model);
}

bool RunningHostViewController::canProceed(std::int32_t direction) {
    return direction < 0 || !hosts_running_;
}

void RunningHostViewController::didProceed(std::int32_t /*direction*/) {
    if (view_) view_->setHidden(true);
    RemoveKillNotify();
    view_.reset();
}

void RunningHostViewController::didEnterWithModel(std::shared_ptr<StepModel> /*model*/,
                                                  std::shared_ptr<View> view,
                                                  MainController* mainController,
                                                  std::int32_t /*direction*/) {
    view_ = std::move(view);
    if (view_) view_->setHidden(false);
    mainController_ = mainController;
    const bool running = checkForRunningHosts();
    mainController->willChange("enableForward");
    setHostIsRunning(running);
    mainController->didChange("enableForward");
    if (running) {
        AddKillNotify();
    } else {
        mainController->nextView(this);
    }
}

std::string RunningHostViewController::hostAppSearchString(const HostModel& host) {
    if (host.as<UnknownHostModel>() != nullptr) return photoshop;
    if (host.as<PhotoshopHostModel>() != nullptr) {
        return contains(host.hostName(), "Elements") ? "Elements" : photoshop;
    }
    if (host.as<LightRoomHostModel>() != nullptr) return "Lightroom";
    // Deliberate: every other kind has this word, Fireworks too.
    return "Aperture";
}

bool RunningHostViewController::isHostRunning(const std::string& word) const {
    return applicationOf(word).has_value();
}

std::optional<std::string> RunningHostViewController::applicationOf(const std::string& word) const {
    for (const std::string& application : platform_.workspace.runningApplications()) {
        if (isApplicationOfHost(application, word)) return application;
    }
    return std::nullopt;
}

bool RunningHostViewController::findApplication(const std::string& word) {
    changes_.willChange("runningApplication");
    runningApplication_ = applicationOf(word).value_or("");
    changes_.didChange("runningApplication");
    return !runningApplication_.empty();
}

bool RunningHostViewController::checkForRunningHosts() {
    hosts_running_ = checkSelectedHosts() || checkInstalledApplications();
    return hosts_running_;
}

bool RunningHostViewController::checkSelectedHosts() {
    if (mainController_ == nullptr) return false;
    for (const HostModel& host : mainController_->selectedHosts()) {
        const std::string word = hostAppSearchString(host);
        nameHost(word);
        if (findApplication(word)) return true;
    }
    return false;
}

bool RunningHostViewController::checkInstalledApplications() {
    const std::string folder =
        joinPath(PlugInFilesModel(platform_).payloadFolder(), "HD/Applications");
    bool found = false;
    platform_.files.walk(folder, WalkDepth::everything, [&](const WalkEntry& entry) {
        if (found || !entry.isPackage) return;
        const auto bundle = platform_.bundles.open(entry.path);
        const auto name = bundle ? bundle->informationValue("CFBundleName") : std::nullopt;
        if (!name || !findApplication(*name)) return;
        found = true;
        nameHost(*name);
    });
    return found;
}

void RunningHostViewController::AddKillNotify() {
    terminations_ = platform_.workspace.onApplicationTerminated(
        [this](const std::string& name) { appTerminated(name); });
}

void RunningHostViewController::RemoveKillNotify() {
    terminations_.cancel();
}

void RunningHostViewController::appTerminated(const std::string& name) {
    platform_.log.log(formatted("terminated %@\n", {name}));
    if (checkForRunningHosts() || mainController_ == nullptr) return;
    mainController_->willChange("enableForward");
    mainController_->willChange("mainLabelText");
    setHostIsRunning(false);
    mainController_->didChange("enableForward");
    mainController_->didChange("mainLabelText");
}

void RunningHostViewController::nameHost(const std::string& name) {
    if (model_) model_->setHostName(name);
}

void RunningHostViewController::setHostIsRunning(bool running) {
    if (model_) model_->setHostIsRunning(running);
}

}  // namespace installer
