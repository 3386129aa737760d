#include "steps/licence/LicenseModel.h"

#include <cstddef>
#include <string>
#include <utility>

#include "foundation/values/Utf8.h"
#include "ports/Bundle.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/LocalizedText.h"

namespace installer {

namespace {

constexpr std::size_t largestLicense = std::size_t{16} << 20;

std::optional<std::string> readLicense(Platform& platform) {
    const auto path = platform.bundle.resourcePath("license", "txt");
    const auto complain = [&platform](const std::string& reason) {
        platform.log.log("The licence cannot be shown: " + reason);
        return std::nullopt;
    };
    if (!path) return complain("the bundle has no license.txt");
    Result<std::string> text = platform.files.read(*path, largestLicense);
    if (!text) return complain(*path + ": " + text.error().message());
    if (!isValidUtf8(text.value())) return complain(*path + " is not UTF-8");
    return std::move(text).value();
}

}  // namespace

LicenseModel::LicenseModel(Platform& platform)
    : licenseText_(readLicense(platform)),
      mainLabelText_(localizedText(platform.bundle, "license_instructions")),
      stepIndicatorLabelText_(localizedText(platform.bundle, "license_blue_dot")) {}

std::optional<std::string> LicenseModel::mainLabelText() const {
    return mainLabelText_;
}

std::string LicenseModel::stepIndicatorLabelText() const {
    return stepIndicatorLabelText_;
}

PlainOrStyledText LicenseModel::informativeText() const {
    return std::string();
}

}  // namespace installer
