#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ports/FileQuery.h"
#include "privileged/files/FolderListing.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

/// A search of folder trees, done in portions. The trees may belong to other users, who may change
/// them meanwhile: folders are opened from the top of their tree and through no link, so nothing
/// leads out of it, and neither a deep tree nor a wide one takes more than three descriptors and
/// the memory given.
class FileSearch {
  public:
    /// `memoryLimit` counts the bytes of what was found and of the folders yet to be looked into;
    /// what does not fit is skipped.
    FileSearch(std::string pattern, std::vector<std::string> scopes, std::size_t memoryLimit);

    /// Takes that many steps, each of which opens a folder or reads a part of it, and adds what it
    /// finds. False when there is nothing left to look into.
    [[nodiscard]] bool goOn(int steps, std::vector<FoundFile>& found);

  private:
    [[nodiscard]] bool step(std::vector<FoundFile>& found);
    void openScope(const std::string& path);
    void openFolder(std::string path);
    void readFolder(std::vector<FoundFile>& found);
    void look(const FolderEntry& entry, std::vector<FoundFile>& found);
    [[nodiscard]] bool hold(std::size_t bytes);
    void letGo(std::size_t bytes) { held_ -= bytes; }

    std::string pattern_;
    std::vector<std::string> scopes_;  ///< still to be searched, the next one last
    std::size_t memoryLimit_;
    std::size_t held_ = 0;

    // Paths below the scope are relative to it; the empty one is the scope itself.
    std::string scope_;
    FileDescriptor top_;
    std::vector<std::string>
        folders_;  ///< in the scope, still to be looked into, the next one last
    std::string folder_;
    FileDescriptor open_;
};

}  // namespace installer
