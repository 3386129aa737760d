#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ports/FileManager.h"

namespace installer::test {

/// Passes every operation on to another file manager, unchanged. The base of file managers that
/// watch or disturb some operations.
class ForwardingFileManager : public FileManager {
  public:
    /// `files` outlives this object and the files that it opens.
    explicit ForwardingFileManager(FileManager& files) : files_(files) {}

    bool exists(const std::string& path) override { return files_.exists(path); }
    Result<std::vector<std::string>> list(const std::string& folder) override {
        return files_.list(folder);
    }
    void walk(const std::string& folder, WalkDepth depth,
              const std::function<void(const WalkEntry&)>& visit) override {
        files_.walk(folder, depth, visit);
    }
    Result<std::vector<TreeEntry>> readTree(const std::string& folder,
                                            ProgressSink* progress) override {
        return files_.readTree(folder, progress);
    }
    bool isPackage(const std::string& path) override { return files_.isPackage(path); }
    std::error_code copy(const std::string& source, const std::string& destination,
                         ProgressSink* progress) override {
        return files_.copy(source, destination, progress);
    }
    void expectCopies(CopySchedule schedule) override { files_.expectCopies(std::move(schedule)); }
    std::uint64_t bytesToCopy(const std::string& path) override { return files_.bytesToCopy(path); }
    std::optional<std::uint64_t> freeBytes(const std::string& path) override {
        return files_.freeBytes(path);
    }
    std::error_code remove(const std::string& path) override { return files_.remove(path); }
    std::error_code createFolders(const std::string& folder, std::uint32_t permissions) override {
        return files_.createFolders(folder, permissions);
    }
    Result<FileAttributes> attributes(const std::string& path) override {
        return files_.attributes(path);
    }
    std::error_code setAttributes(const std::string& path,
                                  const FileAttributeChanges& changes) override {
        return files_.setAttributes(path, changes);
    }
    Result<std::string> read(const std::string& path, std::size_t limit) override {
        return files_.read(path, limit);
    }
    std::error_code createFile(const std::string& path, std::string_view contents) override {
        return files_.createFile(path, contents);
    }
    Result<std::unique_ptr<WritableFile>> openForWriting(const std::string& path) override {
        return files_.openForWriting(path);
    }

  protected:
    FileManager& files_;
};

}  // namespace installer::test
