#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "linux/files/CopyThreads.h"
#include "linux/files/FilledFolder.h"
#include "ports/FileManager.h"
#include "privileged/copies/FinishedTree.h"
#include "privileged/copies/TreeCopy.h"
#include "privileged/files/Location.h"

namespace installer {

/// Fills the files that will be copied next ahead of time, without names, on other threads. Each
/// gets its name at the moment of its own copy. Whatever goes wrong before that is not reported:
/// the file is then copied at its moment as if nobody had prepared it. A bounded number of files
/// and bytes is held ready, and none while the disk is nearly full.
class CopyStager {
  public:
    CopyStager(LinkPolicy policy, CopyThreads& threads)
        : policy_(policy), threads_(threads), destination_(policy) {}
    ~CopyStager() { end(); }
    CopyStager(const CopyStager&) = delete;
    CopyStager& operator=(const CopyStager&) = delete;

    /// From now on these copies come. `given` and `privileges` as for a copy.
    void begin(std::function<std::optional<ExpectedCopy>()> next,
               std::optional<GivenAttributes> given, Privileges privileges);

    /// What the copies of now are given.
    [[nodiscard]] const std::optional<GivenAttributes>& given() const { return given_; }

    /// Nothing is expected any more; what was prepared is given up.
    void end();

    /// The same for what was prepared alone: the rest is copied at its own moment. True if there
    /// was something.
    bool giveUpPrepared();

    /// Forgets the folders that are kept open at the path or below it.
    void forgetFolder(const std::string& path);

    /// The folder that the published files of now go into.
    [[nodiscard]] FilledFolder& destination() { return destination_; }

    class Prepared;
    /// The copy, if it was expected. Those that were expected before it are given up.
    [[nodiscard]] std::shared_ptr<Prepared> take(const std::string& source,
                                                 const std::string& destination);

    /// Gives the prepared file its name. EEXIST where there is an entry of that name; nullopt if it
    /// must be copied in the usual way. Waits for a file that is just being filled.
    [[nodiscard]] std::optional<std::error_code> publish(Prepared& prepared,
                                                         const CopyProgress& progress,
                                                         FinishedTree& finished);

  private:
    using Folder = std::shared_ptr<const FileDescriptor>;
    /// A folder that is kept open, since the next copy will probably need it too.
    struct KeptFolder {
        std::string path;
        Folder folder;
    };

    void topUp();
    void prepare(const std::shared_ptr<Prepared>& copy);
    void fill(Prepared& copy);
    void waitFor(Prepared& copy, const CopyProgress& progress);
    void giveUp(Prepared& copy);
    [[nodiscard]] Folder sourceFolder(std::string_view folderPath);
    [[nodiscard]] Folder stagingFolder(std::string_view folderPath);
    [[nodiscard]] bool leadsTo(const std::string& path, const struct stat& status);
    [[nodiscard]] static bool hasRoom(int folder);

    LinkPolicy policy_;
    CopyThreads& threads_;
    std::function<std::optional<ExpectedCopy>()> next_;
    std::optional<GivenAttributes> given_;
    Privileges privileges_ = Privileges::keep;
    bool mayPrepare_ = false;
    std::atomic<bool> isUnsupported_ = false;  ///< some file system has no nameless files
    std::size_t mostFiles_ = 0;
    std::deque<std::shared_ptr<Prepared>> expected_;
    std::uint64_t bytes_ = 0;  ///< of the files in `expected_` that are prepared
    KeptFolder source_, staging_;
    FilledFolder destination_;

    std::mutex mutex_;
    std::condition_variable filled_;
};

}  // namespace installer
