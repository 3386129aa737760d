#include "linux/desktop/ApplicationIcon.h"

#include <array>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include "foundation/values/PackageName.h"
#include "foundation/values/Paths.h"
#include "linux/bundle/PackageLayout.h"
#include "ports/Bundle.h"

namespace installer {

namespace {

/// "" for a name that already has its suffix. What every window can show comes first.
constexpr std::array<const char*, 5> iconTypes = {"", "png", "svg", "tiff", "icns"};
constexpr const char* usualIcon = "AppIcon";
constexpr std::string_view iconBundleSuffix = ".app";

bool isExistingFolder(const std::string& path) {
    std::error_code error;
    return path.find('\0') == std::string::npos && std::filesystem::is_directory(path, error);
}

bool isFile(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

std::optional<std::string> iconNamed(const Bundle& bundle, const std::string& name) {
    if (!isPlainFileName(name)) return std::nullopt;
    for (const char* type : iconTypes) {
        const auto path = bundle.resourcePath(name, type);
        if (path && isFile(*path)) return path;
    }
    return std::nullopt;
}

Image iconOfPackage(const Bundle& bundle) {
    const std::string named = bundle.informationValue("CFBundleIconFile").value_or("");
    if (auto icon = iconNamed(bundle, named)) return {std::move(*icon)};
    return {iconNamed(bundle, usualIcon).value_or("")};
}

/// Empty when there is none.
std::string firstApplicationIn(const std::string& folder) {
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        std::string path = entry->path().string();
        const bool isApplication = !name.starts_with('.') && name.ends_with(iconBundleSuffix);
        if (isApplication && isExistingFolder(path)) return path;
    }
    return "";
}

}  // namespace

Image applicationIcon(const std::string& path, Bundles& bundles) {
    if (!isExistingFolder(path)) return {};
    const bool isPackage = isPackageName(lastPathComponent(path));
    const std::string package = isPackage ? path : firstApplicationIn(path);
    const auto bundle = package.empty() ? nullptr : bundles.open(package);
    return bundle ? iconOfPackage(*bundle) : Image();
}

}  // namespace installer
