#pragma once

#include <string>
#include <vector>

namespace installer {

class Bundle;
class HostModel;

/// What the page of hosts says when the plug-in would be put into none of the selected hosts; empty
/// when it would be put into one.
[[nodiscard]] std::string selectionNote(const Bundle& bundle,
                                        const std::vector<HostModel>& selected);

}  // namespace installer
