#include "app/texts/HostsTexts.h"

#include <algorithm>

#include "app/texts/HostRefusal.h"
#include "foundation/text/Format.h"
#include "hosts/HostModel.h"
#include "hosts/NotOfferedHost.h"
#include "ports/Platform.h"
#include "product/LocalizedText.h"

namespace installer {

namespace {

std::string reasonFormat(const Bundle& bundle, NotOfferedHost::Reason reason) {
    switch (reason) {
        case NotOfferedHost::Reason::tooOld:
            return localizedText(bundle, "not_offered_too_old");
        case NotOfferedHost::Reason::elements:
            return localizedText(bundle, "not_offered_elements");
        case NotOfferedHost::Reason::folderMissing:
            return localizedText(bundle, "not_offered_folder_missing");
        case NotOfferedHost::Reason::unreadable:
            return localizedText(bundle, "not_offered_unreadable");
    }
    return "%@";
}

}  // namespace

std::string selectionNote(Platform& platform, const std::vector<HostModel>& selected) {
    const Bundle& bundle = platform.bundle;
    for (const HostModel& host : selected) {
        if (linkRefusalOf(platform, host) == LinkRefusal::none) continue;
        return formatted(localizedText(bundle, "refused_host_selected_fmt"), {host.hostName()});
    }
    // A custom folder that was not chosen yet is selected too.
    const bool hasFolder = std::ranges::any_of(
        selected, [](const HostModel& host) { return !host.plugInPath().empty(); });
    return hasFolder ? "" : localizedText(bundle, "no_photoshop_selected");
}

std::string noPhotoshopFoundText(const Bundle& bundle, const std::vector<HostModel>& found) {
    const bool isFound = std::ranges::any_of(
        found, [](const HostModel& host) { return host.as<UnknownHostModel>() == nullptr; });
    return isFound ? "" : localizedText(bundle, "no_photoshop_found");
}

std::string notOfferedText(const Bundle& bundle, const std::vector<NotOfferedHost>& hosts) {
    std::string names;
    for (const NotOfferedHost& host : hosts) {
        if (!names.empty()) names += ", ";
        names += formatted(reasonFormat(bundle, host.reason), {host.name});
    }
    return names.empty() ? "" : formatted(localizedText(bundle, "not_offered_fmt"), {names});
}

}  // namespace installer
