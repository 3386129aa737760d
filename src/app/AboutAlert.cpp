#include "app/AboutAlert.h"

#include <optional>
#include <string>

#include "app/texts/WindowTexts.h"
#include "foundation/text/Format.h"
#include "ports/Bundle.h"
#include "product/LocalizedText.h"

namespace installer {

namespace {

void addLine(std::string& text, const std::string& line) {
    if (line.empty()) return;
    if (!text.empty()) text += '\n';
    text += line;
}

std::string versionLine(const Bundle& bundle) {
    const std::optional<std::string> version =
        bundle.informationValue("CFBundleShortVersionString");
    if (!version) return "";
    return formatted(localizedText(bundle, "about_version_fmt"), {*version});
}

}  // namespace

Alert aboutAlert(const Bundle& bundle) {
    std::string message;
    addLine(message, productName(bundle));
    addLine(message, companyName(bundle));
    addLine(message, versionLine(bundle));
    return {.identifier = "about",
            .style = Alert::Style::informational,
            .title = aboutMenuText(bundle),
            .message = message,
            .buttons = {localizedText(bundle, "ok_button")}};
}

}  // namespace installer
