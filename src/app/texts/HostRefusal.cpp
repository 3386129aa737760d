#include "app/texts/HostRefusal.h"

#include "hosts/HostModel.h"
#include "install/plan/HostItems.h"
#include "ports/Platform.h"

namespace installer {

LinkRefusal linkRefusalOf(Platform& platform, const HostModel& host) {
    for (const std::string& folder : foldersOfHost(platform, host)) {
        const LinkRefusal refusal = platform.authorizations.linkRefusal(folder);
        if (refusal != LinkRefusal::none) return refusal;
    }
    return LinkRefusal::none;
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
