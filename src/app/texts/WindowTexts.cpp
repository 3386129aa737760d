#include "app/texts/WindowTexts.h"

#include <optional>
#include <string>
#include <string_view>

#include "foundation/text/Format.h"
#include "foundation/text/ShownLength.h"
#include "ports/Bundle.h"
#include "product/CutNote.h"
#include "product/LocalizedText.h"
#include "product/RtfResource.h"
#include "steps/licence/LicenseModel.h"
#include "wizard/StepModel.h"

namespace installer {

namespace {

std::string filledWithProductName(const Bundle& bundle, const std::string& formatKey) {
    return formatted(localizedText(bundle, formatKey), {productName(bundle)});
}

}  // namespace

std::string productName(const Bundle& bundle) {
    return installerText(bundle, "product_name");
}

std::string companyName(const Bundle& bundle) {
    return installerText(bundle, "company_name");
}

std::string windowTitle(const Bundle& bundle) {
    return filledWithProductName(bundle, "main_wnd_title_fmt");
}

std::string aboutMenuText(const Bundle& bundle) {
    return filledWithProductName(bundle, "about_menu_fmt");
}

std::string quitMenuText(const Bundle& bundle) {
    return filledWithProductName(bundle, "quit_menu_fmt");
}

std::string hideMenuText(const Bundle& bundle) {
    return filledWithProductName(bundle, "hide_window_menu_fmt");
}

std::string authorizationReason(const Bundle& bundle) {
    const std::string reason = localizedText(
        bundle, "authorization_reason",
        "%@ by %@ needs administrator rights to install its files for all users of this machine.");
    return formatted(reason,
                     {folderName(bundle, "product_name"), folderName(bundle, "company_name")});
}

std::string authorizationFolders(const Bundle& bundle) {
    return localizedText(bundle, "authorization_folders",
                         "It changes files below these folders only:");
}

std::string authorizationMoreFolders(const Bundle& bundle) {
    return localizedText(bundle, "authorization_more_folders", "(and %@ more)");
}

std::string mainLabelTextOf(const StepModel* model) {
    if (model == nullptr) return "???";
    try {
        return model->mainLabelText().value_or("nil!!!");
    } catch (...) {
        return "No text in your setup step model???";
    }
}

PlainOrStyledText informativeTextOf(const StepModel* model) {
    return model == nullptr ? std::string() : model->informativeText();
}

StyledText licenseTextOf(const LicenseModel* model, const Bundle& bundle) {
    if (model == nullptr) return nilText();
    const std::optional<std::string>& terms = model->licenseText();
    if (!terms) return nilText();
    const std::string_view shown = shownPart(*terms);
    StyledText text = StyledText::fromPlainText(shown);
    text.isCut = shown.size() < terms->size();
    addCutNote(text, bundle, bundle.resourcePath("license", "txt").value_or("license.txt"));
    return text;
}

}  // namespace installer
