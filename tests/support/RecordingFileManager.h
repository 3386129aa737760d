#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/ForwardingFileManager.h"

namespace installer::test {

/// Passes every operation on to another file manager. Writes those that change something into a
/// list, and lets a test make any operation fail.
class RecordingFileManager : public ForwardingFileManager {
  public:
    /// An operation as the recorder sees it: its name, then its paths ("copy", "/a", "/b").
    using Operation = std::vector<std::string>;
    /// Gives the error an operation is to fail with; the empty code lets it pass. Asked for every
    /// operation that can fail, those that only look included.
    using Fault = std::function<std::error_code(const Operation&)>;

    /// The recording goes to `journal`, so that several recorders can share one and the order of
    /// everything shows. Both outlive this object.
    RecordingFileManager(FileManager& files, std::vector<std::string>& journal)
        : ForwardingFileManager(files), journal_(journal) {}

    int measured = 0;  ///< how often the size of an entry was asked for
    /// Every look at what is in a folder: "list", "walk" or "readTree" and the folder.
    std::vector<std::string> looks;

    void setFault(Fault fault) { fault_ = std::move(fault); }

    Result<std::vector<std::string>> list(const std::string& folder) override;
    void walk(const std::string& folder, WalkDepth depth,
              const std::function<void(const WalkEntry&)>& visit) override;
    Result<std::vector<TreeEntry>> readTree(const std::string& folder,
                                            ProgressSink* progress) override;
    std::error_code copy(const std::string& source, const std::string& destination,
                         ProgressSink* progress) override;
    std::uint64_t bytesToCopy(const std::string& path) override;
    std::error_code remove(const std::string& path) override;
    std::error_code createFolders(const std::string& folder, std::uint32_t permissions) override;
    Result<FileAttributes> attributes(const std::string& path) override;
    std::error_code setAttributes(const std::string& path,
                                  const FileAttributeChanges& changes) override;
    Result<std::string> read(const std::string& path, std::size_t limit) override;
    std::error_code createFile(const std::string& path, std::string_view contents) override;
    Result<std::unique_ptr<WritableFile>> openForWriting(const std::string& path) override;

  private:
    /// Makes the folders of a tree unreadable whose reading the test wants to fail.
    void markUnreadable(const std::string& folder, std::vector<TreeEntry>& entries);
    [[nodiscard]] std::error_code faultOf(const Operation& operation) const;
    void record(const std::string& line) { journal_.push_back(line); }

    std::vector<std::string>& journal_;
    Fault fault_;
};

}  // namespace installer::test
