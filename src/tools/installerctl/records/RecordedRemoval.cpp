#include "tools/installerctl/records/RecordedRemoval.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include "privileged/system/SystemError.h"
#include "privileged/trees/Temporary.h"
#include "tools/installerctl/records/TreeRecords.h"

namespace installer {

namespace {

bool isNothing(std::error_code error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

RemovalOutcome outcomeOf(std::error_code error) {
    if (!error) return {Removal::removed, {}};
    if (isNothing(error)) return {Removal::missing, {}};
    if (error == std::errc::directory_not_empty || error == std::errc::file_exists) {
        return {Removal::notEmpty, {}};
    }
    return {Removal::failed, error};
}

std::error_code unlinked(const Location& location, int flags) {
    const bool isDone = ::unlinkat(location.parent.get(), location.name.c_str(), flags) == 0;
    return isDone ? std::error_code() : systemError();
}

}  // namespace

RemovalOutcome removeRecorded(const std::string& path, const EntryMap::Alternatives& records,
                              LinkPolicy links) {
    const auto location = locate(path, links);
    if (!location) return outcomeOf(location.error());
    const auto present = recordEntryAt(location.value().parent.get(), location.value().name, path);
    if (!present) return outcomeOf(present.error());
    const bool isFolder = present.value().kind == EntryKind::folder;
    const bool isRecorded = std::ranges::any_of(records, [&](const EntryRecord& record) {
        return isFolder ? record.kind == EntryKind::folder : isSameEntry(record, present.value());
    });
    if (!isRecorded) return {Removal::changed, {}};
    return outcomeOf(unlinked(location.value(), isFolder ? AT_REMOVEDIR : 0));
}

void clearDeadCopies(const std::string& folder, LinkPolicy links) {
    const auto location = locate(folder, links);
    if (!location) return;
    const FileDescriptor opened(::openat(location.value().parent.get(),
                                         location.value().name.c_str(),
                                         O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (opened) clearDeadTemporariesAgain(opened.get());
}

RemovalOutcome removeEmptyFolder(const std::string& path, LinkPolicy links) {
    const auto location = locate(path, links);
    if (!location) return outcomeOf(location.error());
    return outcomeOf(unlinked(location.value(), AT_REMOVEDIR));
}

}  // namespace installer
