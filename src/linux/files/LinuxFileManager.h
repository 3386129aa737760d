#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

#include <sys/types.h>

#include "linux/files/CopyStager.h"
#include "linux/files/CopyThreads.h"
#include "ports/FileManager.h"
#include "privileged/copies/FinishedTree.h"
#include "privileged/files/Location.h"

namespace installer {

class SystemLog;

/// The file manager on the real file system. Operations that only look follow any link before a
/// path's last component; those that change something, and both ends of a copy, obey the link
/// policy and refuse (ELOOP) what it forbids. Where only trusted links are followed, copies lose
/// the set-user-ID and set-group-ID bits and the capabilities of files.
class LinuxFileManager : public FileManager {
  public:
    /// What is right for this process: only trusted links when it acts as root, where users can
    /// have made links, else any.
    [[nodiscard]] static LinkPolicy linkPolicyOfThisProcess();

    /// `exists` logs entries that it cannot look at. The log outlives this object. That many
    /// threads help with copies.
    explicit LinuxFileManager(SystemLog& log, LinkPolicy policy = linkPolicyOfThisProcess(),
                              unsigned threads = CopyThreads::usualCount())
        : log_(log), policy_(policy), threads_(threads), stager_(policy, threads_) {}

    /// What is known of the last copy.
    [[nodiscard]] const FinishedTree& finishedTree() const { return finished_; }

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
    [[nodiscard]] std::error_code copyNow(const std::string& source, const std::string& destination,
                                          const CopyProgress& progress,
                                          const FileBegins& fileBegins,
                                          const std::optional<GivenAttributes>& given);
    [[nodiscard]] std::error_code createFileNow(const std::string& path,
                                                std::string_view contents) const;
    /// What this process can give to copies itself.
    [[nodiscard]] std::optional<GivenAttributes> givable(const FileAttributeChanges& attributes);
    [[nodiscard]] Privileges privilegesOfCopies() const;
    template <class Operation>
    [[nodiscard]] std::error_code withRoom(Operation operation);
    Result<uid_t> userNumber(const std::string& name);
    Result<gid_t> groupNumber(const std::string& name);

    SystemLog& log_;
    LinkPolicy policy_;
    std::set<std::string> reported_;  ///< entries that could not be looked at, as the log says
    // An installation asks for the same two names thousands of times.
    std::map<std::string, uid_t> users_;
    std::map<std::string, gid_t> groups_;
    FinishedTree finished_;
    CopyThreads threads_;
    CopyStager stager_;  ///< after the threads that it uses
};

}  // namespace installer
