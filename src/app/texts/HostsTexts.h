#pragma once

#include <string>
#include <vector>

namespace installer {

class Bundle;
class HostModel;
struct NotOfferedHost;

/// What the page of hosts says when the plug-in would be put into none of the selected hosts; empty
/// when it would be put into one.
[[nodiscard]] std::string selectionNote(const Bundle& bundle,
                                        const std::vector<HostModel>& selected);

/// A sentence if no Photoshop is among the hosts, else empty.
[[nodiscard]] std::string noPhotoshopFoundText(const Bundle& bundle,
                                               const std::vector<HostModel>& found);

/// Names what was found and is not offered, with the reasons; empty if there is nothing.
[[nodiscard]] std::string notOfferedText(const Bundle& bundle,
                                         const std::vector<NotOfferedHost>& hosts);

}  // namespace installer
