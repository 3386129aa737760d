#include <exception>
#include <memory>
#include <utility>

#include "ports/SystemLog.h"
#include "ports/window/WindowModule.h"
#include "qt/dialogs/QtAlerts.h"
#include "qt/dialogs/QtClipboard.h"
#include "qt/dialogs/QtFolderPanel.h"
#include "qt/theme/ColorScheme.h"
#include "qt/window/ApplicationSetup.h"
#include "qt/window/DisplayProbe.h"
#include "qt/window/QtEventLoop.h"
#include "qt/window/QtInterfaceLoader.h"
#include "qt/window/WindowClock.h"

namespace installer {

namespace {

class WindowModuleImpl final : public WindowModule {
  public:
    WindowModuleImpl(const WindowModuleContext& context, const std::string& platform)
        : application_(context.executablePath, platform, context.bundle, context.log),
          alerts_(context.bundle),
          interfaces_(context.bundle, context.log, context.openLink) {}

    [[nodiscard]] EventLoop& eventLoop() override { return eventLoop_; }
    [[nodiscard]] DescriptorWatcher& descriptors() override { return eventLoop_; }
    [[nodiscard]] Alerts& alerts() override { return alerts_; }
    [[nodiscard]] FolderPanel& folderPanel() override { return folderPanel_; }
    [[nodiscard]] InterfaceLoader& interfaces() override { return interfaces_; }
    [[nodiscard]] Clipboard& clipboard() override { return clipboard_; }
    [[nodiscard]] Clock& clock() override { return clock_; }

    void run() override { application_.run(); }

  private:
    // Made first and destroyed last: the toolkit's objects need it.
    ApplicationSetup application_;
    ColorScheme colorScheme_{ColorScheme::sessionBus()};
    QtEventLoop eventLoop_;
    QtAlerts alerts_;
    QtFolderPanel folderPanel_;
    QtClipboard clipboard_;
    QtInterfaceLoader interfaces_;
    WindowClock clock_;
};

std::unique_ptr<WindowModule> makeWindowModule(const WindowModuleContext& context) {
    // Lives on, with its connection, while the toolkit makes its own.
    const DisplayProbe display = probeDisplay(displaySurroundings());
    if (!display.usable) {
        context.log.log("There is no display to show a window on: " + display.reason);
        return nullptr;
    }
    return std::make_unique<WindowModuleImpl>(context, display.platform);
}

}  // namespace

}  // namespace installer

extern "C" __attribute__((visibility("default"))) installer::WindowModule*
installerMakeWindowModule(const installer::WindowModuleContext& context) {
    try {
        return installer::makeWindowModule(context).release();
    } catch (const std::exception& error) {
        context.log.log(std::string("The window could not be prepared: ") + error.what());
    } catch (...) {
        context.log.log("The window could not be prepared");
    }
    return nullptr;
}
