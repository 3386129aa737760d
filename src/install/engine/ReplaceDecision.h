#pragma once

#include <optional>
#include <string>

#include "install/engine/DecimalNumber.h"

namespace installer {

class Bundle;
class Bundles;
class FileManager;
struct Platform;

/// Whether an existing item is replaced by an item of the payload. In reserve: `FileInstaller` asks
/// only if its caller passes `alwaysInstall` false, and every caller passes true.
class ReplaceDecision {
  public:
    explicit ReplaceDecision(Platform& platform);

    /// The bundle's version as one number, or nullopt if it has no version. Each part between the
    /// dots becomes at least four digits, and all digits together are the number: 1.2.3 gives
    /// 100020003. Missing parts are not added, so 1.2.3 is greater than 2.0. Compare only versions
    /// with the same number of parts. A part counts as the whole number that it begins with, else
    /// as 0 ("5b2" is 5, "b5" is 0, "1e3" is 1), and may be of any size. A negative first part
    /// makes the version negative; the version ends before any later negative part.
    [[nodiscard]] static std::optional<DecimalNumber> versionFromBundle(const Bundle& bundle);

    /// False if the existing bundle is newer than the source, or if the source is not a bundle or
    /// has no version. A source with a version replaces an existing bundle without one.
    [[nodiscard]] bool isFileOkToInstallByBundleVersion(const std::string& source,
                                                        const std::string& alreadyThere) const;

    /// False if the existing entry was modified after the source. An empty folder is always
    /// replaced. If a date cannot be read, the answer is true.
    [[nodiscard]] bool isFileOkToInstallByModificationTime(const std::string& source,
                                                           const std::string& alreadyThere) const;

  private:
    [[nodiscard]] bool isEmptyFolder(const std::string& path) const;

    FileManager& files_;
    Bundles& bundles_;
};

}  // namespace installer
