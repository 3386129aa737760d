#pragma once

#include <string>
#include <vector>

namespace installer {

class Bundle;
class HostModel;
struct NotOfferedHost;
struct Platform;

/// What the page of hosts says of the selected hosts: that one of them takes nothing, and keeps the
/// others after it out, or that the plug-in would be put into none. Empty if there is nothing to
/// say.
[[nodiscard]] std::string selectionNote(Platform& platform, const std::vector<HostModel>& selected);

/// A sentence if no Photoshop is among the hosts, else empty.
[[nodiscard]] std::string noPhotoshopFoundText(const Bundle& bundle,
                                               const std::vector<HostModel>& found);

/// Names what was found and is not offered, with the reasons; empty if there is nothing.
[[nodiscard]] std::string notOfferedText(const Bundle& bundle,
                                         const std::vector<NotOfferedHost>& hosts);

}  // namespace installer
