#include "steps/hosts/HostRefusal.h"

#include "foundation/text/Format.h"
#include "hosts/HostModel.h"
#include "install/plan/HostItems.h"
#include "ports/Platform.h"
#include "product/LocalizedText.h"

namespace installer {

LinkRefusal linkRefusalOf(Platform& platform, const HostModel& host) {
    for (const std::string& folder : foldersOfHost(platform, host)) {
        const LinkRefusal refusal = platform.authorizations.linkRefusal(folder);
        if (refusal != LinkRefusal::none) return refusal;
    }
    return LinkRefusal::none;
}

std::string refusedFolderText(const Bundle& bundle, LinkRefusal refusal,
                              const std::string& folder) {
    switch (refusal) {
        case LinkRefusal::ofAnotherUser:
            return formatted(localizedText(bundle, "host_link_of_another_fmt", "%@"), {folder});
        case LinkRefusal::intoSystem:
            return formatted(localizedText(bundle, "host_link_into_system_fmt", "%@"), {folder});
        case LinkRefusal::none:
            break;
    }
    return folder;
}

const char* description(LinkRefusal refusal) {
    switch (refusal) {
        case LinkRefusal::ofAnotherUser:
            return "its folder is reached through a link of another user, which is not followed";
        case LinkRefusal::intoSystem:
            return "its folder is reached through a link into a folder of the system";
        case LinkRefusal::none:
            break;
    }
    return "";
}

}  // namespace installer
