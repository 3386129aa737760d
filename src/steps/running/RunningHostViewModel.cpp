#include "steps/running/RunningHostViewModel.h"

#include <string_view>
#include <utility>

#include "ports/window/WindowPlatform.h"
#include "product/LocalizedText.h"
#include "product/RtfResource.h"

namespace installer {

namespace {

/// Reads the resource into the template. If that fails, the text that is shown is "nil".
void readTemplate(WindowPlatform& platform, const std::string& name, StyledText& formatString,
                  StyledText& shown) {
    if (std::optional<StyledText> page = rtfResource(platform, name)) {
        formatString = *std::move(page);
    } else {
        shown = nilText();
    }
}

void fillIn(const StyledText& formatString, std::string_view placeholder, std::string_view name,
            StyledText& shown) {
    if (formatString.contains(placeholder)) shown = formatString.replacingAll(placeholder, name);
}

}  // namespace

RunningHostViewModel::RunningHostViewModel(WindowPlatform& platform) : platform_(platform) {
    readTemplate(platform, "host_running", runningFormatString_, runningText_);
    readTemplate(platform, "proceed", notRunningFormatString_, notRunningText_);
    mainLabelText_ = localizedText(platform.bundle, "host_running_title");
    stepIndicatorLabelText_ = localizedText(platform.bundle, "running_blue_dot");
    thank_you_ = localizedText(platform.bundle, "thank_you");
}

void RunningHostViewModel::setHostIsRunning(bool running) {
    willChange("informativeText");
    host_running_ = running;
    didChange("informativeText");
}

void RunningHostViewModel::setHostName(const std::string& name) {
    willChange("informativeText");
    fillIn(runningFormatString_, "%HOSTNAME%", name, runningText_);
    fillIn(notRunningFormatString_, "%PRODUCTNAME%",
           installerText(platform_.bundle, "product_name"), notRunningText_);
    didChange("informativeText");
}

std::optional<std::string> RunningHostViewModel::mainLabelText() const {
    return host_running_ ? mainLabelText_ : thank_you_;
}

std::string RunningHostViewModel::stepIndicatorLabelText() const {
    return stepIndicatorLabelText_;
}

PlainOrStyledText RunningHostViewModel::informativeText() const {
    return host_running_ ? runningText_ : notRunningText_;
}

}  // namespace installer
