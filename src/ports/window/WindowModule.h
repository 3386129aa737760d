#pragma once

#include <functional>
#include <string>

namespace installer {

class Alerts;
class Bundle;
class Clipboard;
class Clock;
class DescriptorWatcher;
class EventLoop;
class FileManager;
class FolderPanel;
class InterfaceLoader;
class SystemLog;

/// The adapters that need the window toolkit. They are built as a module of their own, which is
/// loaded only when there is something to show, so that a quiet installation brings no toolkit
/// into the process.
class WindowModule {
  public:
    virtual ~WindowModule() = default;

    [[nodiscard]] virtual EventLoop& eventLoop() = 0;
    [[nodiscard]] virtual DescriptorWatcher& descriptors() = 0;
    [[nodiscard]] virtual Alerts& alerts() = 0;
    [[nodiscard]] virtual FolderPanel& folderPanel() = 0;
    [[nodiscard]] virtual InterfaceLoader& interfaces() = 0;
    [[nodiscard]] virtual Clipboard& clipboard() = 0;
    /// Shows that something goes on to who waits by it before there is a window.
    [[nodiscard]] virtual Clock& clock() = 0;

    /// Runs the application until its last window has closed.
    virtual void run() = 0;
};

/// What the module needs. Everything outlives the module.
struct WindowModuleContext {
    std::string executablePath;
    Bundle& bundle;
    FileManager& files;
    SystemLog& log;
    /// Opens an address that was clicked in a text.
    std::function<void(const std::string& address)> openLink;
};

/// The one function of the module, by its C name `makeWindowModuleName`. Null, with the reason in
/// the system log, when there is no display that a window could be shown on. At most one window
/// module is made by a process; the caller owns it.
using MakeWindowModule = WindowModule* (*)(const WindowModuleContext& context);
inline constexpr const char* makeWindowModuleName = "installerMakeWindowModule";

}  // namespace installer
