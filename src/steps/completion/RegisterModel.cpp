#include "steps/completion/RegisterModel.h"

#include "foundation/text/Format.h"
#include "ports/Bundle.h"
#include "ports/Platform.h"
#include "product/LocalizedText.h"
#include "product/RtfResource.h"

namespace installer {

namespace {

/// The bundle's picture of that name, of whichever type the bundle has.
Image namedImage(const Bundle& bundle, const std::string& name) {
    for (const char* type : {"png", "tiff", "svg"}) {
        if (const auto path = bundle.resourcePath(name, type)) return {*path};
    }
    return {};
}

}  // namespace

RegisterModel::RegisterModel(Platform& platform)
    : platform_(platform),
      mainLabelText_(localizedText(platform.bundle, "register_title")),
      stepIndicatorLabelText_(localizedText(platform.bundle, "register_blue_dot")),
      registerMessage_(rtfResource(platform, "register").value_or(nilText())),
      failMessage_(formatted(localizedText(platform.bundle, "install_failed"),
                             {installerText(platform.bundle, "company_name")})) {}

std::optional<std::string> RegisterModel::mainLabelText() const {
    return mainLabelText_;
}

std::string RegisterModel::stepIndicatorLabelText() const {
    return stepIndicatorLabelText_;
}

PlainOrStyledText RegisterModel::informativeText() const {
    return informativeText_;
}

Image RegisterModel::backgroundImage() const {
    return namedImage(platform_.bundle, indicateFailure_ ? "Installer_Error" : "checkmark");
}

void RegisterModel::useFailText() {
    informativeText_ = StyledText::fromPlainText(failMessage_);
    indicateFailure_ = true;
}

void RegisterModel::useRegisterText() {
    informativeText_ = registerMessage_;
    indicateFailure_ = false;
}

}  // namespace installer
