#include "foundation/values/SystemFolders.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory_resource>
#include <vector>

namespace installer {

namespace {

using Components = std::span<const std::string_view>;

/// Splits a path into its components. Nothing is allocated for paths of usual depth: this is asked
/// several times for each item of an installation.
class SplitPath {
  public:
    explicit SplitPath(std::string_view path) { split(path); }

    [[nodiscard]] Components components() const { return components_; }

  private:
    void split(std::string_view path);

    std::array<std::byte, 512> buffer_;
    std::pmr::monotonic_buffer_resource memory_{buffer_.data(), buffer_.size()};
    std::pmr::vector<std::string_view> components_{&memory_};
};

void SplitPath::split(std::string_view path) {
    components_.reserve(16);
    while (!path.empty()) {
        const std::string_view name = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(path.size(), name.size() + 1));
        if (name.empty() || name == ".") continue;
        if (name != "..") {
            components_.push_back(name);
        } else if (!components_.empty()) {
            components_.pop_back();
        }
    }
}

bool isBelow(Components path, Components folder) {
    return path.size() > folder.size() && std::equal(folder.begin(), folder.end(), path.begin());
}

bool isBelowAHome(Components path, std::span<const std::string> homes) {
    return std::any_of(homes.begin(), homes.end(), [path](const std::string& home) {
        const SplitPath folder(home);
        // A home that is the root would allow everything.
        return !folder.components().empty() && isBelow(path, folder.components());
    });
}

}  // namespace

bool isInSystemFolder(std::string_view path, std::span<const std::string> ownHomes) {
    static constexpr std::array<std::array<std::string_view, 2>, 6> allowed = {{{"usr", "local"},
                                                                                {"Users", "Shared"},
                                                                                {"mnt", ""},
                                                                                {"media", ""},
                                                                                {"run", "media"},
                                                                                {"Volumes", ""}}};
    static constexpr std::array<std::string_view, 17> system = {
        "etc", "usr",  "bin", "sbin", "lib",  "lib32", "lib64", "libx32", "boot",
        "dev", "proc", "sys", "run",  "root", "var",   "home",  "Users"};
    if (!path.starts_with('/')) return false;
    const SplitPath split(path);
    const Components components = split.components();
    if (components.empty()) return true;
    if (std::find(system.begin(), system.end(), components.front()) == system.end()) return false;
    if (isBelowAHome(components, ownHomes)) return false;
    const auto holdsIt = [components](const std::array<std::string_view, 2>& folder) {
        return isBelow(components, Components(folder).first(folder[1].empty() ? 1 : 2));
    };
    return std::none_of(allowed.begin(), allowed.end(), holdsIt);
}

}  // namespace installer
