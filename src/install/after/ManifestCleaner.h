#pragma once

namespace installer {

struct Platform;

/// Deletes the stale files "manifest.xml" that earlier products of the maker have left anywhere
/// in the maker's folder in the user's Application Support, but not inside packages.
class ManifestCleaner {
  public:
    explicit ManifestCleaner(Platform& platform) : platform_(platform) {}

    /// What cannot be read or deleted is passed over.
    void cleanManifests();

  private:
    Platform& platform_;
};

}  // namespace installer
