#include "steps/aperture/ApertureRunModel.h"

#include "ports/SearchPaths.h"
#include "ports/window/WindowPlatform.h"
#include "ports/window/Workspace.h"
#include "product/LocalizedText.h"
#include "product/RtfResource.h"

namespace installer {

ApertureRunModel::ApertureRunModel(WindowPlatform& platform)
    : platform_(platform),
      mainLabelText_(localizedText(platform.bundle, "aperture_title")),
      stepIndicatorLabelText_(localizedText(platform.bundle, "aperture_blue_dot")),
      informativeText_(rtfResource(platform, "aperture").value_or(nilText())) {}

std::optional<std::string> ApertureRunModel::mainLabelText() const {
    return mainLabelText_;
}

std::string ApertureRunModel::stepIndicatorLabelText() const {
    return stepIndicatorLabelText_;
}

PlainOrStyledText ApertureRunModel::informativeText() const {
    return informativeText_;
}

Image ApertureRunModel::backgroundImage() const {
    return platform_.workspace.iconOfFile(
        platform_.searchPaths.onTargetVolume("/Applications/Aperture.app"));
}

}  // namespace installer
