#include "install/engine/ReplaceDecision.h"

#include "foundation/text/Text.h"
#include "ports/Bundle.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"

namespace installer {

ReplaceDecision::ReplaceDecision(Platform& platform)
    : files_(platform.files), bundles_(platform.bundles) {}

std::optional<DecimalNumber> ReplaceDecision::versionFromBundle(const Bundle& bundle) {
    const auto version = bundle.informationValue("CFBundleVersion");
    if (!version) return std::nullopt;
    std::string digits;
    for (const std::string& part : split(*version, '.')) {
        digits += DecimalNumber::parsed(part).paddedTo(4);
    }
    return DecimalNumber::parsed(digits);
}

bool ReplaceDecision::isFileOkToInstallByBundleVersion(const std::string& source,
                                                       const std::string& alreadyThere) const {
    if (!files_.exists(alreadyThere)) return true;
    const auto existing = bundles_.open(alreadyThere);
    if (!existing) return true;
    const auto existingVersion = versionFromBundle(*existing);
    const auto replacement = bundles_.open(source);
    if (!replacement) return false;
    const auto version = versionFromBundle(*replacement);
    if (!version) return false;
    return !existingVersion || *version >= *existingVersion;
}

bool ReplaceDecision::isEmptyFolder(const std::string& path) const {
    const auto attributes = files_.attributes(path);
    if (!attributes || attributes.value().type != FileType::folder) return false;
    const auto names = files_.list(path);
    return names && names.value().empty();
}

bool ReplaceDecision::isFileOkToInstallByModificationTime(const std::string& source,
                                                          const std::string& alreadyThere) const {
    if (!files_.exists(alreadyThere) || isEmptyFolder(alreadyThere)) return true;
    const auto sourceAttributes = files_.attributes(source);
    const auto existing = files_.attributes(alreadyThere);
    if (!sourceAttributes || !existing) return true;
    return sourceAttributes.value().modificationDate >= existing.value().modificationDate;
}

}  // namespace installer
