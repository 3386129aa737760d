#include "steps/install/InstallFilesModel.h"

#include "foundation/text/Format.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/LocalizedText.h"

namespace installer {

InstallFilesModel::InstallFilesModel(Platform& platform)
    : mainLabelText_(formatted(localizedText(platform.bundle, "copy_files_title"),
                               {folderName(platform.bundle, "company_name")})),
      stepIndicatorLabelText_(localizedText(platform.bundle, "copy_files_blue_dot")),
      informativeText_(localizedText(platform.bundle, "copy_files_text")) {
    if (mainLabelText_.empty()) {
        platform.log.log("can't create mainLabelText in InstallFilesModel init()");
    }
}

std::optional<std::string> InstallFilesModel::mainLabelText() const {
    return mainLabelText_;
}

std::string InstallFilesModel::stepIndicatorLabelText() const {
    return stepIndicatorLabelText_;
}

PlainOrStyledText InstallFilesModel::informativeText() const {
    return informativeText_;
}

void InstallFilesModel::setInformativeText(const std::string& text) {
    willChange("informativeText");
    informativeText_ = text;
    didChange("informativeText");
}

}  // namespace installer
