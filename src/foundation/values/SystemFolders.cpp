#include "foundation/values/SystemFolders.h"

#include <algorithm>
#include <array>
#include <vector>

namespace installer {

namespace {

using Components = std::vector<std::string_view>;

Components componentsOf(std::string_view path) {
    Components components;
    while (!path.empty()) {
        const std::string_view name = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(path.size(), name.size() + 1));
        if (name.empty() || name == ".") continue;
        if (name != "..") {
            components.push_back(name);
        } else if (!components.empty()) {
            components.pop_back();
        }
    }
    return components;
}

bool isBelow(const Components& path, const Components& folder) {
    return path.size() > folder.size() && std::equal(folder.begin(), folder.end(), path.begin());
}

bool isBelow(const Components& path, std::string_view folder) {
    return isBelow(path, componentsOf(folder));
}

bool isBelowAHome(const Components& path, std::span<const std::string> homes) {
    return std::any_of(homes.begin(), homes.end(), [&path](const std::string& home) {
        const Components folder = componentsOf(home);
        // A home that is the root would allow everything.
        return !folder.empty() && isBelow(path, folder);
    });
}

}  // namespace

bool isInSystemFolder(std::string_view path, std::span<const std::string> ownHomes) {
    static constexpr std::array<std::string_view, 6> allowed = {
        "/usr/local", "/Users/Shared", "/mnt", "/media", "/run/media", "/Volumes"};
    static constexpr std::array<std::string_view, 17> system = {
        "etc", "usr",  "bin", "sbin", "lib",  "lib32", "lib64", "libx32", "boot",
        "dev", "proc", "sys", "run",  "root", "var",   "home",  "Users"};
    if (!path.starts_with('/')) return false;
    const Components components = componentsOf(path);
    if (components.empty()) return true;
    if (isBelowAHome(components, ownHomes)) return false;
    const auto holdsIt = [&components](std::string_view folder) {
        return isBelow(components, folder);
    };
    if (std::any_of(allowed.begin(), allowed.end(), holdsIt)) return false;
    return std::find(system.begin(), system.end(), components.front()) != system.end();
}

}  // namespace installer
