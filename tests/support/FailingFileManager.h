#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/Faults.h"
#include "tests/support/ForwardingFileManager.h"

namespace installer::test {

/// Passes every operation on to another file manager, but for those that the faults make fail. What
/// such a one leaves is what the contract of the operation permits a failure to leave:
///
///   exists, isPackage           false
///   bytesToCopy                 0
///   expectCopies                nothing is expected
///   list, attributes, read      nothing but the error
///   walk                        nothing is visited; part: what is in sub-folders is passed over
///   readTree                    nothing but the error; part: sub-folders cannot be read
///   copy, createFile            nothing
///   remove                      the entry, whole; part and everything: it is gone
///   createFolders               nothing; part: the folders above; everything: the folder too
///   setAttributes               nothing; part: the owner is changed; everything: all is
///   openForWriting, setSize     nothing
///   write                       nothing; part: half of the text; everything: the text
class FailingFileManager : public ForwardingFileManager {
  public:
    /// Both outlive this object and the files that it opens.
    FailingFileManager(FileManager& files, Faults& faults)
        : ForwardingFileManager(files), faults_(faults) {}

    bool exists(const std::string& path) override;
    Result<std::vector<std::string>> list(const std::string& folder) override;
    void walk(const std::string& folder, WalkDepth depth,
              const std::function<void(const WalkEntry&)>& visit) override;
    Result<std::vector<TreeEntry>> readTree(const std::string& folder,
                                            ProgressSink* progress) override;
    bool isPackage(const std::string& path) override;
    std::error_code copy(const std::string& source, const std::string& destination,
                         ProgressSink* progress) override;
    void expectCopies(CopySchedule schedule) override;
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
    class OpenFile;

    Faults& faults_;
};

}  // namespace installer::test
