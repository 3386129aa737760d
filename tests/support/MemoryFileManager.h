#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "ports/FileManager.h"

namespace installer::test {

/// A file system in memory that keeps the promises of `FileManager`, as the user "tester". Folders
/// list their entries in the order in which they were made. Owners are names, so tests can read
/// them. There are no extended attributes.
class MemoryFileManager : public FileManager {
  public:
    struct Node {
        FileType type = FileType::regular;
        std::string contents = {};  ///< of a regular file, or a link's target
        std::uint32_t permissions = 0644;
        FileTime modificationDate = {};
        std::string owner = "tester";
        std::string group = "tester";
        std::uint64_t order = 0;       ///< place among its siblings
        std::uint64_t sharedFile = 0;  ///< the same for all names of one file, if it has several

        friend bool operator==(const Node&, const Node&) = default;
    };

    MemoryFileManager();

    /// The names that the system knows.
    std::set<std::string> users = {"root", "tester"};
    std::set<std::string> groups = {"root", "tester", "admin", "staff"};

    // Making a scene. Missing folders above are made.
    void addFile(const std::string& path, const std::string& contents = "",
                 std::uint32_t permissions = 0644);
    void addFolder(const std::string& path, std::uint32_t permissions = 0755);
    void addLink(const std::string& path, const std::string& target);
    void addOther(const std::string& path);
    /// One more name of a file.
    void addHardLink(const std::string& path, const std::string& file);
    void setModificationDate(const std::string& path, FileTime date);

    /// The user may change nothing in this folder and below it: every change there gives EACCES.
    void makeUnwritable(const std::string& folder);
    /// The user may not list this folder, but reach what is in it.
    void makeUnlistable(const std::string& folder);

    /// The entry at the path, or null. Does not follow links.
    [[nodiscard]] const Node* node(const std::string& path) const;
    /// All paths in the tree but the root, sorted.
    [[nodiscard]] std::vector<std::string> paths() const;
    /// The contents of a regular file; empty when there is none.
    [[nodiscard]] std::string contents(const std::string& path) const;

    // The same changes without asking for permission: what the administrator does.
    std::error_code copyAsAdministrator(const std::string& source, const std::string& destination);
    std::error_code removeAsAdministrator(const std::string& path);
    void makeFoldersAsAdministrator(const std::string& folder, std::uint32_t permissions);
    void setOwnerAsAdministrator(const std::string& path, const std::string& owner,
                                 const std::string& group);
    void setModeAsAdministrator(const std::string& path, std::uint32_t permissions);

    bool exists(const std::string& path) override;
    Result<std::vector<std::string>> list(const std::string& folder) override;
    void walk(const std::string& folder, WalkDepth depth,
              const std::function<void(const WalkEntry&)>& visit) override;
    Result<std::vector<TreeEntry>> readTree(const std::string& folder,
                                            ProgressSink* progress) override;
    bool isPackage(const std::string& path) override;
    std::error_code copy(const std::string& source, const std::string& destination,
                         ProgressSink* progress) override;
    /// Only remembers them, until the next schedule: nothing here takes long.
    void expectCopies(CopySchedule schedule) override;
    bool expectsCopies = false;  ///< until an empty schedule ends it
    std::vector<ExpectedCopy> expectedCopies;
    FileAttributeChanges expectedAttributes;
    std::uint64_t bytesToCopy(const std::string& path) override;
    /// The smallest of those that are given for the path or for a folder above it, else nullopt.
    std::map<std::string, std::uint64_t> freeBytesBelow = {{"/", 1'000'000'000}};
    std::optional<std::uint64_t> freeBytes(const std::string& path) override;
    std::error_code remove(const std::string& path) override;
    std::error_code createFolders(const std::string& folder, std::uint32_t permissions) override;
    Result<FileAttributes> attributes(const std::string& path) override;
    std::error_code setAttributes(const std::string& path,
                                  const FileAttributeChanges& changes) override;
    Result<std::string> read(const std::string& path, std::size_t limit) override;
    std::error_code createFile(const std::string& path, std::string_view contents) override;
    Result<std::unique_ptr<WritableFile>> openForWriting(const std::string& path) override;

  private:
    class OpenFile;

    enum class LinkAtEnd { follow, keep };

    Node& add(const std::string& path, FileType type);
    /// The path without links, apart from one at its end that is kept. There need not be an entry,
    /// but a folder around it.
    [[nodiscard]] Result<std::string> located(const std::string& path, LinkAtEnd atEnd) const;
    /// The entry at the path or why there is none. Does not follow a link at the end.
    [[nodiscard]] Result<std::string> existing(const std::string& path, LinkAtEnd atEnd) const;
    /// The same for a folder that the user may list. Follows a link at the end.
    [[nodiscard]] Result<std::string> listable(const std::string& folder) const;
    [[nodiscard]] Node* find(const std::string& path);
    /// All names of the file at that path, or the entry alone.
    [[nodiscard]] std::vector<Node*> namesOf(const std::string& path);
    /// 0 for a file with one name.
    [[nodiscard]] std::uint64_t sharedFile(const Node& node) const;
    /// The sizes of the regular files among the entries, each file once.
    [[nodiscard]] std::vector<std::uint64_t> sizesOfFiles(
        const std::vector<std::string>& paths) const;

    // These take paths as `located` gives them.
    [[nodiscard]] bool mayChange(const std::string& path) const;
    [[nodiscard]] std::vector<std::string> entriesOf(const std::string& folder) const;
    [[nodiscard]] std::vector<TreeEntry> treeEntriesOf(const std::string& folder) const;
    [[nodiscard]] std::vector<std::string> treeOf(const std::string& path) const;
    void walkLocated(const std::string& folder, const std::string& shown, WalkDepth depth,
                     const std::function<void(const WalkEntry&)>& visit);
    std::error_code copyLocated(const std::string& source, const std::string& destination);

    std::map<std::string, Node> nodes_;  ///< by paths without links before the last component
    std::set<std::string> unwritable_;
    std::set<std::string> unlistable_;
    std::uint64_t nextOrder_ = 0;
};

}  // namespace installer::test
