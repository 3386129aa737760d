#pragma once

#include <vector>

#include "ports/window/InterfaceOwner.h"

namespace installer {

class HostModel;
class Workspace;

/// The rows of the list of hosts: each host's name, its folder with that folder's icon, and a check
/// mark for the hosts that the user wants. The folder is the host application's, or the plug-in
/// folder where there is no application.
[[nodiscard]] std::vector<ListRow> hostRows(const std::vector<HostModel>& hosts,
                                            Workspace& workspace);

}  // namespace installer
