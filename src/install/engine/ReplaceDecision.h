#pragma once

#include <optional>
#include <string>

#include "install/engine/DecimalNumber.h"

namespace installer {

class Bundle;
class Bundles;
class FileManager;
struct Platform;

/// Whether what is already installed gives way to an item of the payload.
class ReplaceDecision {
  public:
    explicit ReplaceDecision(Platform& platform);

    /// The bundle's version as one number, or none when it has no version: each part between the
    /// dots becomes at least four digits, and all the digits together are the number. Parts are
    /// not filled up, so 1.2.3 is greater than 2.0; versions are only compared with versions of
    /// as many parts. A part counts as the whole number that it begins with, 0 when there is
    /// none ("5b2" is 5, "b5" is 0, "1e3" is 1), and may be of any size. Only a negative first
    /// part makes the version negative; a version ends before any later negative one.
    [[nodiscard]] static std::optional<DecimalNumber> versionFromBundle(const Bundle& bundle);

    /// False when the existing bundle is newer than the source, or the source is no bundle, or
    /// has no version. An existing one without a version gives way to any that has one.
    [[nodiscard]] bool isFileOkToInstallByBundleVersion(const std::string& source,
                                                        const std::string& alreadyThere) const;

    /// False when the existing entry was modified after the source. An empty folder gives way to
    /// everything. A date that cannot be read keeps nothing from being installed.
    [[nodiscard]] bool isFileOkToInstallByModificationTime(const std::string& source,
                                                           const std::string& alreadyThere) const;

  private:
    [[nodiscard]] bool isEmptyFolder(const std::string& path) const;

    FileManager& files_;
    Bundles& bundles_;
};

}  // namespace installer
