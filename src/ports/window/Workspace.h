#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/observers/Subscription.h"
#include "ports/window/Image.h"

namespace installer {

/// An application that was launched here. Destroying the object leaves the application alone.
class LaunchedApplication {
  public:
    virtual ~LaunchedApplication() = default;
    /// Asks it to end, and does not wait for that.
    virtual void terminate() = 0;
};

/// What a person knows a running application by, beside its name.
struct ApplicationFace {
    std::string owner =
        {};           ///< the login name of the user who started it; empty for the person's own
    Image icon = {};  ///< no picture when it is not known
};

/// The user's desktop and what runs on it.
class Workspace {
  public:
    virtual ~Workspace() = default;

    /// Opens the address with the application that the desktop has for it, the default browser for
    /// web pages, and does not wait for it. False, with a line in the system log, when it is no
    /// address or nothing could be started.
    virtual bool openAddress(const std::string& address) = 0;

    /// The same for a file, by its path.
    virtual bool openFile(const std::string& path) = 0;

    /// Calls `handler` with each address or path whose opening was started and then failed: what
    /// was to open it soon ended with an error, for instance because the desktop has no browser.
    /// Called while the event loop turns and until the handle is destroyed. The handler may destroy
    /// this object.
    [[nodiscard]] virtual Subscription onOpeningFailed(
        std::function<void(const std::string& addressOrPath)> handler) = 0;

    /// The names of the running applications, as a person knows them, in the platform's order.
    /// From now on their ends are watched, and no others; an end that has happened already, of what
    /// was watched before, is still told.
    [[nodiscard]] virtual std::vector<std::string> runningApplications() = 0;

    /// The face of the first of those applications that has the name; an empty one when it has
    /// ended.
    [[nodiscard]] virtual ApplicationFace faceOfRunningApplication(const std::string& name) = 0;

    /// Calls `handler` with the name of each watched application that ends, while the event loop
    /// turns and until the handle is destroyed. The handler may ask for the running applications
    /// anew; an application that has ended is not among them.
    [[nodiscard]] virtual Subscription onApplicationTerminated(
        std::function<void(const std::string& name)> handler) = 0;

    /// Starts the application at the path as a new, hidden instance. Null when that fails.
    [[nodiscard]] virtual std::unique_ptr<LaunchedApplication> launchHidden(
        const std::string& path, const std::vector<std::string>& arguments) = 0;

    /// The system and its version in one line, for the maker's support.
    [[nodiscard]] virtual std::string systemDescription() = 0;

    /// The icon of the file or application at the path; no picture when there is none.
    [[nodiscard]] virtual Image iconOfFile(const std::string& path) = 0;
};

}  // namespace installer
