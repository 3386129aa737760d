#include "linux/display/WindowModuleLoader.h"

#include <filesystem>
#include <system_error>

#include <dlfcn.h>
#include <stdlib.h>

#include "foundation/values/Paths.h"
#include "ports/SystemLog.h"

namespace installer {

namespace {

std::string lastLoaderError() {
    const char* error = ::dlerror();
    return error == nullptr ? "unknown error" : error;
}

/// Without a font every text in the window is blank: a system without any uses the bundle's.
void useCarriedFont(const std::string& bundleFolder) {
    const std::string fonts = joinPath(bundleFolder, "Contents/Frameworks/fonts/fonts.conf");
    std::error_code error;
    if (!std::filesystem::exists(fonts, error)) return;
    if (std::filesystem::exists("/etc/fonts/fonts.conf", error)) return;
    constexpr int keepsTheUsersOwn = 0;
    ::setenv("FONTCONFIG_FILE", fonts.c_str(), keepsTheUsersOwn);
}

}  // namespace

std::unique_ptr<WindowModule> loadWindowModule(const std::string& bundleFolder,
                                               const WindowModuleContext& context) {
    const std::string path = joinPath(bundleFolder, "Contents/Frameworks/InstallerWindow.so");
    std::error_code error;
    if (!std::filesystem::exists(path, error)) {
        context.log.log("The installer has no window module: " + path + " is missing");
        return nullptr;
    }
    useCarriedFont(bundleFolder);
    // Never unloaded: the toolkit leaves handlers behind that run when the process ends.
    void* module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        context.log.log(
            "The window module could not be loaded. Is the Qt 6 package of this system installed? "
            "The loader says: " +
            lastLoaderError());
        return nullptr;
    }
    auto* make = reinterpret_cast<MakeWindowModule>(::dlsym(module, makeWindowModuleName));
    if (make == nullptr) {
        context.log.log("The window module is not one of this installer: " + lastLoaderError());
        return nullptr;
    }
    return std::unique_ptr<WindowModule>(make(context));
}

}  // namespace installer
