#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ports/FileManager.h"
#include "tests/ports/Adapter.h"

namespace installer::test {

/// A file manager of an ordinary user, and an empty folder of theirs. Names are relative to it.
class FileManagerScene {
  public:
    virtual ~FileManagerScene() = default;

    [[nodiscard]] virtual FileManager& files() = 0;
    [[nodiscard]] virtual std::string path(const std::string& name = "") const = 0;

    virtual void makeFolder(const std::string& name) = 0;
    virtual void makeFile(const std::string& name, const std::string& contents = "") = 0;
    virtual void makeLink(const std::string& target, const std::string& name) = 0;
    /// One more name of the file.
    virtual void makeHardLink(const std::string& file, const std::string& name) = 0;
    /// Something that is no file, folder or link.
    virtual void makeSpecial(const std::string& name) = 0;
    virtual void setPermissions(const std::string& name, std::uint32_t permissions) = 0;
    virtual void setModificationDate(const std::string& name, FileTime date) = 0;
    /// The user may no longer list the folder, but reach what is in it.
    virtual void makeUnlistable(const std::string& folder) = 0;

    /// The folder and what is in it belong to somebody else, and the user may only look. False
    /// where a test cannot have that.
    [[nodiscard]] virtual bool makeForeign(const std::string& folder) = 0;

    /// The names by which the system knows the user and their own group.
    [[nodiscard]] virtual std::string userName() const = 0;
    [[nodiscard]] virtual std::string groupName() const = 0;

    [[nodiscard]] virtual std::string contents(const std::string& name) = 0;
    [[nodiscard]] virtual std::string linkTarget(const std::string& name) = 0;
    /// The lines that the file manager has written into the system log.
    [[nodiscard]] virtual std::vector<std::string> logged() const = 0;
};

using FileManagerAdapter = Adapter<FileManagerScene>;

/// What every file manager promises. An implementation joins with INSTANTIATE_TEST_SUITE_P for
/// each fixture (`FileManagerAdapters.cpp`).
class FileManagerContract : public Contract<FileManagerScene> {
  protected:
    static constexpr std::size_t plenty = 1 << 20;
    static constexpr std::errc missing = std::errc::no_such_file_or_directory;

    FileManager& files() { return scene_->files(); }
    [[nodiscard]] std::string path(const std::string& name = "") const {
        return scene_->path(name);
    }

    /// The entries of the tree by their names.
    std::map<std::string, TreeEntry> entries(const std::string& folder) {
        std::map<std::string, TreeEntry> byName;
        const auto tree = files().readTree(path(folder), nullptr);
        EXPECT_TRUE(tree);
        if (!tree) return byName;
        for (const TreeEntry& entry : tree.value()) byName[entry.name] = entry;
        return byName;
    }

    /// The names in the folder, sorted.
    std::vector<std::string> names(const std::string& folder = "") {
        const auto listed = files().list(path(folder));
        if (!listed) return {listed.error().message()};
        std::vector<std::string> sorted = listed.value();
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }
};

class FileManagerContractLooking : public FileManagerContract {};
class FileManagerContractChanging : public FileManagerContract {};

}  // namespace installer::test
