#include "install/engine/FileInstaller.h"

#include <chrono>
#include <utility>

#include "foundation/text/Format.h"
#include "foundation/values/Paths.h"
#include "install/plan/InstallPlan.h"
#include "install/run/InstallProgress.h"
#include "ports/Clock.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/LocalizedText.h"

namespace installer {

FileInstaller::FileInstaller(Platform& platform, InstallRun& run, PrivilegedCommands& commands,
                             DestinationFolders& folders, FileErrorAlerts& errors,
                             ShowText showText)
    : platform_(platform),
      run_(run),
      commands_(commands),
      folders_(folders),
      errors_(errors),
      decision_(platform),
      showText_(std::move(showText)) {}

void FileInstaller::installSourceFiles(const std::vector<std::string>& sources,
                                       const std::string& toPath, bool isBundle,
                                       bool alwaysInstall) {
    std::vector<Source> items;
    items.reserve(sources.size());
    for (const std::string& source : sources) items.push_back({&source, std::nullopt});
    installEach(items, toPath, isBundle, alwaysInstall);
    confirm();
}

void FileInstaller::confirm() {
    // Refused rights are a flag of the run.
    static_cast<void>(commands_.confirmItems());
}

void FileInstaller::install(std::span<const PlannedItem> items) {
    if (items.empty()) return;
    std::vector<Source> sources;
    sources.reserve(items.size());
    for (const PlannedItem& item : items) sources.push_back({&item.source, item.bytes});
    installEach(sources, items.front().destinationFolder(), items.front().isPackage, true);
}

void FileInstaller::installEach(const std::vector<Source>& sources, const std::string& toPath,
                                bool isBundle, bool alwaysInstall) {
    const std::string folder = withSingleSeparators(toPath);
    folders_.ensureDirExists(folder);
    if (run_.authDenied) return;

    // Survives from item to item on purpose: an item that is kept because it is newer also holds
    // back the missing items after it, until the next one that exists is decided.
    bool carry = true;
    for (const Source& item : sources) {
        beginItem(item);
        const std::string& source = *item.path;
        const std::string destination = joinPath(folder, lastPathComponent(source));
        const bool isThere = platform_.files.exists(destination);
        if (isThere) carry = alwaysInstall || mayReplace(source, destination, isBundle);
        if (!carry) continue;
        if (isThere && removeExisting(destination) == Outcome::refused) return;
        const std::optional<bool> isInstalled = copyItem(source, destination);
        if (!isInstalled) return;
        if (!*isInstalled) continue;
        if (commands_.finishItem(destination) == Outcome::refused) return;
    }
    if (run_.progress != nullptr) run_.progress->endItem();
}

void FileInstaller::beginItem(const Source& source) {
    run_.trouble.clear();
    const std::string text =
        localizedText(platform_.bundle, "installing_file") + lastPathComponent(*source.path);
    platform_.log.log(text);
    showText_(text);
    if (run_.progress == nullptr) return;
    run_.progress->beginItem(source.bytes ? *source.bytes
                                          : platform_.files.bytesToCopy(*source.path));
}

bool FileInstaller::mayReplace(const std::string& source, const std::string& destination,
                               bool isBundle) const {
    return isBundle ? decision_.isFileOkToInstallByBundleVersion(source, destination)
                    : decision_.isFileOkToInstallByModificationTime(source, destination);
}

FileInstaller::Outcome FileInstaller::removeExisting(const std::string& destination) {
    platform_.log.log("removing existing file...");
    if (commands_.confirmItems() == Outcome::refused) return Outcome::refused;
    if (!platform_.files.remove(destination)) return Outcome::finished;
    return commands_.removeItem(destination);
}

std::optional<bool> FileInstaller::copyItem(const std::string& source,
                                            const std::string& destination) {
    FileManager& files = platform_.files;
    if (const std::error_code error = files.copy(source, destination, run_.progress)) {
        run_.trouble = error.message();
        // What is there counts as installed, even an old item that nobody could remove.
        if (files.exists(destination)) return true;
        if (isHidden(destination)) return copyHiddenItem(source, destination);
        if (commands_.copyItem(source, destination) == Outcome::refused) return std::nullopt;
        if (!files.exists(destination)) awaitItem(source, destination);
    }
    return files.exists(destination);
}

bool FileInstaller::isHidden(const std::string& destination) const {
    return platform_.files.attributes(destination).error() == std::errc::permission_denied;
}

/// Where the user may not look, an old item may be there, and the administrator's answer is all
/// that is known.
std::optional<bool> FileInstaller::copyHiddenItem(const std::string& source,
                                                  const std::string& destination) {
    if (commands_.removeItem(destination) == Outcome::refused) return std::nullopt;
    if (commands_.copyItem(source, destination) == Outcome::refused) return std::nullopt;
    if (commands_.lastCommandSucceeded()) return true;
    errors_.showFileErrorUI(destination);
    return false;
}

/// The item that the administrator copied may need a moment to appear: microseconds, not
/// milliseconds, so that a copy that failed costs next to nothing.
void FileInstaller::awaitItem(const std::string& source, const std::string& destination) {
    constexpr int checks = 32;
    for (int check = 0; check < checks; ++check) {
        if (platform_.files.exists(destination)) {
            platform_.log.log(
                formatted("Took a delay to verify file %@", {lastPathComponent(source)}));
            return;
        }
        platform_.clock.sleep(std::chrono::microseconds(125));
    }
    errors_.showFileErrorUI(destination);
}

}  // namespace installer
