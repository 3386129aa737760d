#pragma once

#include <string>
#include <vector>

#include "ports/window/InterfaceOwner.h"

namespace installer {

class HostModel;
struct WindowPlatform;

/// The host's folder: the application's; for a host without an application the plug-in folder.
[[nodiscard]] std::string hostFolder(const HostModel& host);

/// The rows of the list of hosts. A row has the host's name, its folder with the folder's icon, and
/// a check mark if the host is selected. The folder is the one that `hostFolder` gives.
/// Rows that would read the same name the files through which their hosts were found. A row says
/// why nothing can be put into its host (`linkRefusalOf`).
[[nodiscard]] std::vector<ListRow> hostRows(const std::vector<HostModel>& hosts,
                                            WindowPlatform& platform);

}  // namespace installer
