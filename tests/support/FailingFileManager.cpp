#include "tests/support/FailingFileManager.h"

#include <utility>

#include "foundation/values/Paths.h"

namespace installer::test {

namespace {

std::error_code errorOf(const FaultPlan& plan) {
    return std::make_error_code(plan.error);
}

}  // namespace

class FailingFileManager::OpenFile : public WritableFile {
  public:
    OpenFile(std::unique_ptr<WritableFile> file, std::string path, Faults& faults)
        : file_(std::move(file)), path_(std::move(path)), faults_(faults) {}

    std::error_code write(std::string_view text) override {
        const FaultPlan* plan = faults_.next({"write", path_});
        if (plan == nullptr) return file_->write(text);
        if (plan->afterEffect == AfterEffect::part) text = text.substr(0, text.size() / 2);
        if (plan->afterEffect != AfterEffect::nothing) static_cast<void>(file_->write(text));
        return errorOf(*plan);
    }

    std::error_code setSize(std::uint64_t size) override {
        const FaultPlan* plan = faults_.next({"setSize", path_});
        return plan == nullptr ? file_->setSize(size) : errorOf(*plan);
    }

  private:
    std::unique_ptr<WritableFile> file_;
    std::string path_;
    Faults& faults_;
};

bool FailingFileManager::exists(const std::string& path) {
    return faults_.next({"exists", path}) == nullptr && files_.exists(path);
}

Result<std::vector<std::string>> FailingFileManager::list(const std::string& folder) {
    if (const FaultPlan* plan = faults_.next({"list", folder})) return errorOf(*plan);
    return files_.list(folder);
}

void FailingFileManager::walk(const std::string& folder, WalkDepth depth,
                              const std::function<void(const WalkEntry&)>& visit) {
    if (const FaultPlan* plan = faults_.next({"walk", folder})) {
        if (plan->afterEffect == AfterEffect::nothing) return;
        depth = WalkDepth::entries;
    }
    files_.walk(folder, depth, visit);
}

Result<std::vector<TreeEntry>> FailingFileManager::readTree(const std::string& folder,
                                                            ProgressSink* progress) {
    const FaultPlan* plan = faults_.next({"readTree", folder});
    if (plan != nullptr && plan->afterEffect == AfterEffect::nothing) return errorOf(*plan);
    auto tree = files_.readTree(folder, progress);
    if (plan == nullptr || !tree) return tree;
    for (TreeEntry& entry : tree.value()) {
        entry.isUnreadable = entry.type == FileType::folder;
        entry.entries.clear();
    }
    return tree;
}

bool FailingFileManager::isPackage(const std::string& path) {
    return faults_.next({"isPackage", path}) == nullptr && files_.isPackage(path);
}

std::error_code FailingFileManager::copy(const std::string& source, const std::string& destination,
                                         ProgressSink* progress) {
    if (const FaultPlan* plan = faults_.next({"copy", source, destination})) return errorOf(*plan);
    return files_.copy(source, destination, progress);
}

void FailingFileManager::expectCopies(CopySchedule schedule) {
    if (faults_.next({"expectCopies"}) == nullptr) files_.expectCopies(std::move(schedule));
}

std::uint64_t FailingFileManager::bytesToCopy(const std::string& path) {
    return faults_.next({"bytesToCopy", path}) == nullptr ? files_.bytesToCopy(path) : 0;
}

std::error_code FailingFileManager::remove(const std::string& path) {
    const FaultPlan* plan = faults_.next({"remove", path});
    if (plan == nullptr) return files_.remove(path);
    if (plan->afterEffect != AfterEffect::nothing) static_cast<void>(files_.remove(path));
    return errorOf(*plan);
}

std::error_code FailingFileManager::createFolders(const std::string& folder,
                                                  std::uint32_t permissions) {
    const FaultPlan* plan = faults_.next({"createFolders", folder});
    if (plan == nullptr) return files_.createFolders(folder, permissions);
    if (plan->afterEffect != AfterEffect::nothing) {
        const bool whole = plan->afterEffect == AfterEffect::everything;
        static_cast<void>(files_.createFolders(whole ? folder : parentPath(folder), permissions));
    }
    return errorOf(*plan);
}

Result<FileAttributes> FailingFileManager::attributes(const std::string& path) {
    if (const FaultPlan* plan = faults_.next({"attributes", path})) return errorOf(*plan);
    return files_.attributes(path);
}

std::error_code FailingFileManager::setAttributes(const std::string& path,
                                                  const FileAttributeChanges& changes) {
    const FaultPlan* plan = faults_.next({"setAttributes", path});
    if (plan == nullptr) return files_.setAttributes(path, changes);
    if (plan->afterEffect != AfterEffect::nothing) {
        FileAttributeChanges done = changes;
        if (plan->afterEffect == AfterEffect::part) done.permissions.reset();
        static_cast<void>(files_.setAttributes(path, done));
    }
    return errorOf(*plan);
}

Result<std::string> FailingFileManager::read(const std::string& path, std::size_t limit) {
    if (const FaultPlan* plan = faults_.next({"read", path})) return errorOf(*plan);
    return files_.read(path, limit);
}

std::error_code FailingFileManager::createFile(const std::string& path, std::string_view contents) {
    if (const FaultPlan* plan = faults_.next({"createFile", path})) return errorOf(*plan);
    return files_.createFile(path, contents);
}

Result<std::unique_ptr<WritableFile>> FailingFileManager::openForWriting(const std::string& path) {
    if (const FaultPlan* plan = faults_.next({"openForWriting", path})) return errorOf(*plan);
    auto file = files_.openForWriting(path);
    if (!file) return file.error();
    std::unique_ptr<WritableFile> opened =
        std::make_unique<OpenFile>(std::move(file).value(), path, faults_);
    return opened;
}

}  // namespace installer::test
