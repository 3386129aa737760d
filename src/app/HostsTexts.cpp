#include "app/HostsTexts.h"

#include <algorithm>

#include "hosts/HostModel.h"
#include "product/LocalizedText.h"

namespace installer {

std::string selectionNote(const Bundle& bundle, const std::vector<HostModel>& selected) {
    // A custom folder that was not chosen yet is selected too.
    const bool hasFolder = std::ranges::any_of(
        selected, [](const HostModel& host) { return !host.plugInPath().empty(); });
    return hasFolder ? "" : localizedText(bundle, "no_photoshop_selected");
}

}  // namespace installer
