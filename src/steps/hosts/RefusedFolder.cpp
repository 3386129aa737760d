#include "steps/hosts/RefusedFolder.h"

#include "foundation/text/Format.h"
#include "product/LocalizedText.h"

namespace installer {

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

}  // namespace installer
