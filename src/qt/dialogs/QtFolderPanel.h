#pragma once

#include "ports/window/FolderPanel.h"

namespace installer {

/// The toolkit's own file dialog over the active window, because a desktop's dialog has no filter
/// for the shown items. A link to a folder counts as a folder; the result is the path that was
/// picked. If the start folder does not exist, the panel starts in the nearest folder above it;
/// without a start folder, in the home folder.
class QtFolderPanel final : public FolderPanel {
  public:
    [[nodiscard]] std::optional<std::string> runModal(const FolderRequest& request) override;
};

}  // namespace installer
