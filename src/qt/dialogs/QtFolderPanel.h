#pragma once

#include "ports/window/FolderPanel.h"

namespace installer {

/// The toolkit's own file dialog over the active window: a desktop's dialog would not ask which
/// items to show. A link to a folder is offered like a folder, and stays the path that was picked.
/// A start folder that does not exist is replaced by the nearest one above it, none at all by the
/// home folder.
class QtFolderPanel final : public FolderPanel {
  public:
    [[nodiscard]] std::optional<std::string> runModal(const FolderRequest& request) override;
};

}  // namespace installer
