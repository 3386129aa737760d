#include "product/CouldNotOpenAlert.h"

#include "foundation/text/Format.h"
#include "product/LocalizedText.h"

namespace installer {

Alert couldNotOpenAlert(const Bundle& bundle, const std::string& addressOrPath) {
    return {.identifier = "could-not-open",
            .style = Alert::Style::informational,
            .title = localizedText(bundle, "could_not_open_title"),
            .message = formatted(localizedText(bundle, "could_not_open_message"), {addressOrPath}),
            .buttons = {localizedText(bundle, "ok_button")}};
}

}  // namespace installer
