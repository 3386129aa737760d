#include "linux/display/DisplayAlerts.h"

#include <utility>

#include "ports/window/WindowModule.h"

namespace installer {

namespace {

bool namesDisplay(const Environment& environment) {
    return !environment("DISPLAY").value_or("").empty() ||
           !environment("WAYLAND_DISPLAY").value_or("").empty();
}

}  // namespace

DisplayAlerts::DisplayAlerts(SystemLog& log, Environment environment,
                             std::function<WindowModule*()> loadWindowModule)
    : text_(log),
      environment_(std::move(environment)),
      loadWindowModule_(std::move(loadWindowModule)) {}

std::size_t DisplayAlerts::runModal(const Alert& alert) {
    // The log keeps the text after the box is closed.
    const std::size_t answer = text_.runModal(alert);
    WindowModule* module = windowModule();
    return module == nullptr ? answer : module->alerts().runModal(alert);
}

WindowModule* DisplayAlerts::windowModule() {
    if (!loaded_) loaded_ = namesDisplay(environment_) ? loadWindowModule_() : nullptr;
    return *loaded_;
}

}  // namespace installer
