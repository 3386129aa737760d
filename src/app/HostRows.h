#pragma once

#include <vector>

#include "ports/window/InterfaceOwner.h"

namespace installer {

class HostModel;
class Workspace;

/// The rows of the list of hosts. A row has the host's name, its folder with the folder's icon, and
/// a check mark if the host is selected. The folder is the application's; for a host without an
/// application it is the plug-in folder.
[[nodiscard]] std::vector<ListRow> hostRows(const std::vector<HostModel>& hosts,
                                            Workspace& workspace);

}  // namespace installer
