#pragma once

namespace installer {

struct Platform;

/// Deletes stale files that earlier products of the maker have left: each file "manifest.xml" at
/// any depth in the maker's folder in the user's Application Support, except inside packages.
class ManifestCleaner {
  public:
    explicit ManifestCleaner(Platform& platform) : platform_(platform) {}

    /// Skips what cannot be read or deleted.
    void cleanManifests();

  private:
    Platform& platform_;
};

}  // namespace installer
