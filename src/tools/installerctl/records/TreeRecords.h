#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "foundation/values/Result.h"
#include "privileged/files/Location.h"
#include "tools/installerctl/records/EntryRecord.h"

namespace installer {

/// Called with the bytes that were read since the last call.
using ReadProgress = std::function<void(std::uint64_t)>;

/// The entry and everything in it, a folder before its contents, in the order of the names. No link
/// is followed but those before the path's last component that the policy allows. What cannot be
/// read has a record without contents. FIFOs, devices and sockets are files without contents.
/// Errors: those of `locate`, and ENOENT if there is no entry.
[[nodiscard]] Result<std::vector<EntryRecord>> recordTree(const std::string& path,
                                                          LinkPolicy policy,
                                                          const ReadProgress& progress = {});

/// The same for the entry alone, without what is in it.
[[nodiscard]] Result<EntryRecord> recordEntry(const std::string& path, LinkPolicy policy,
                                              const ReadProgress& progress = {});

/// The same for an entry of an opened folder; `path` is what the record says.
[[nodiscard]] Result<EntryRecord> recordEntryAt(int parent, const std::string& name,
                                                const std::string& path,
                                                const ReadProgress& progress = {});

}  // namespace installer
