#pragma once

#include <functional>
#include <optional>
#include <string>

namespace installer {

/// How a folder is asked for. Packages count as items, not as folders; new folders can be made,
/// and one folder can be chosen.
struct FolderRequest {
    std::string title;
    std::string message;
    std::string prompt;  ///< the button that confirms
    std::string startFolder;
    /// Which items the panel shows, by their paths.
    std::function<bool(const std::string& path)> shouldShow;
};

class FolderPanel {
  public:
    virtual ~FolderPanel() = default;
    /// Asks the user and waits. nullopt if the user did not confirm.
    [[nodiscard]] virtual std::optional<std::string> runModal(const FolderRequest& request) = 0;
};

}  // namespace installer
