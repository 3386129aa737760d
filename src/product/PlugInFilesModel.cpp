#include "product/PlugInFilesModel.h"

#include "foundation/text/Format.h"
#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "foundation/values/Result.h"
#include "ports/Bundle.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SearchPaths.h"
#include "product/BundleUserDefaults.h"
#include "product/LocalizedText.h"
#include "product/ProductFacts.h"

namespace installer {

namespace {

/// The entry in the user's Application Support; empty when the user has no home folder.
std::string userApplicationSupport(const Platform& platform, const std::string& entry) {
    const std::optional<std::string> folder = ApplicationSupportDirectory(platform);
    return folder ? joinPath(*folder, entry) : "";
}

/// The folder that the product's own settings name, or nullopt. Those settings lie on the target
/// volume and were written by the system there, so the folder is meant on it.
std::optional<std::string> userFolderFromSettings(Platform& platform) {
    const BundleUserDefaults defaults(platform, folderName(platform.bundle, "app_plist"));
    const std::optional<std::string> folder = defaults.stringForKey("User Folder");
    if (!folder || !folder->starts_with('/')) return std::nullopt;
    return platform.searchPaths.onTargetVolume(*folder);
}

}  // namespace

std::optional<std::string> NSUserPreferencesDirectory(const Platform& platform) {
    return platform.searchPaths.userPreferencesFolder();
}

std::optional<std::string> ApplicationSupportDirectory(const Platform& platform) {
    return platform.searchPaths.userApplicationSupportFolder();
}

std::string PlugInFilesModel::getSharedSupportPathInBundleWithSuffix(
    const std::string& suffix) const {
    return joinPath(platform_.bundle.sharedSupportFolder(), suffix);
}

std::string PlugInFilesModel::getPlugInDirInBundle() const {
    return getSharedSupportPathInBundleWithSuffix("PlugIn");
}

std::string PlugInFilesModel::getAutoLayerDirInBundle() const {
    return getSharedSupportPathInBundleWithSuffix("AutoLayer");
}

std::string PlugInFilesModel::getStandAloneAppsDirInBundle() const {
    return getSharedSupportPathInBundleWithSuffix("Standalone");
}

std::string PlugInFilesModel::payloadFolder() const {
    return joinPath(platform_.bundle.resourcesFolder(), "files");
}

std::vector<std::string> PlugInFilesModel::getFullPathsOfFilesInBundle(
    const std::string& folder) const {
    const Result<std::vector<std::string>> names = platform_.files.list(folder);
    if (!names) return {};
    std::vector<std::string> paths;
    paths.reserve(names.value().size());
    for (const std::string& name : names.value()) paths.push_back(joinPath(folder, name));
    return paths;
}

std::vector<std::string> PlugInFilesModel::getFullPathsOfPlugInsInBundle() const {
    return getFullPathsOfFilesInBundle(getPlugInDirInBundle());
}

std::string PlugInFilesModel::companyAppSupportPath() const {
    return joinPath(platform_.searchPaths.localApplicationSupportFolder(),
                    folderName(platform_.bundle, "company_name"));
}

std::string PlugInFilesModel::productAppSupportPath() const {
    return appSupportPathForProduct(folderName(platform_.bundle, "product_name"));
}

std::string PlugInFilesModel::appSupportPathForProduct(const std::string& product) const {
    return joinPath(companyAppSupportPath(), product);
}

std::string PlugInFilesModel::productUserAppSupportPath() const {
    return userAppSupportPathForProduct(folderName(platform_.bundle, "product_name"));
}

std::string PlugInFilesModel::userAppSupportPathForProduct(const std::string& product) const {
    const std::string company = userCompanyAppSupportPath();
    return company.empty() ? "" : joinPath(company, product);
}

std::string PlugInFilesModel::userCompanyAppSupportPath() const {
    return userApplicationSupport(platform_, folderName(platform_.bundle, "company_name"));
}

std::string PlugInFilesModel::userSettingsPath() const {
    if (const std::optional<std::string> folder = userFolderFromSettings(platform_)) {
        const std::string company = joinPath(*folder, folderName(platform_.bundle, "company_name"));
        std::string settings = joinPath(company, folderName(platform_.bundle, "product_name"));
        if (platform_.files.exists(settings)) return settings;
    }
    return productUserAppSupportPath();
}

std::string PlugInFilesModel::settingsInstallPath() const {
    // Settings for all users lie in the product's own folder.
    return productAppSupportPath();
}

std::string PlugInFilesModel::standAloneAppsInstallPath() const {
    return platform_.searchPaths.localApplicationsFolder();
}

std::string PlugInFilesModel::installerLogPath() const {
    const std::string productName = folderName(platform_.bundle, "product_name");
    return joinPath(companyAppSupportPath(), formatted("%@ Installer.log", {productName}));
}

std::string PlugInFilesModel::externalEditorsPath() const {
    return joinPath(appSupportPathForProduct(externalEditorsProduct), "ExternalEditors.csv");
}

std::string PlugInFilesModel::identifierPath() const {
    return joinPath(companyAppSupportPath(), formatted("%@.guid", {"entityresolver"}));
}

std::string PlugInFilesModel::lightRoomSupportPath() const {
    return userApplicationSupport(platform_, "Adobe/Lightroom");
}

std::string PlugInFilesModel::lightRoomPresetDir() const {
    return userApplicationSupport(platform_, "Adobe/Lightroom/External Editor Presets");
}

std::string PlugInFilesModel::apertureUserPluginDir() const {
    return userApplicationSupport(platform_, "Aperture/Plug-Ins");
}

bool PlugInFilesModel::IsCurrentLocale(const std::string& code) const {
    const std::vector<std::string> languages = platform_.searchPaths.preferredLanguages();
    return !languages.empty() && equalIgnoringCase(languages.front(), code);
}

}  // namespace installer
