// The reader of receipts, which say what an administrator's program removes as root. Input: a
// receipt's text.

#include <string>
#include <string_view>
#include <vector>

#include "foundation/values/SystemFolders.h"
#include "tests/fuzz/FuzzInput.h"
#include "tools/installerctl/records/EntryMap.h"
#include "tools/installerctl/records/Receipt.h"

namespace {

using namespace installer;
using fuzz::require;

const std::string volume = "/disk";

std::string unchanged(const std::string& path) {
    return path;
}

std::string onVolume(const std::string& path) {
    return path.empty() ? path : volume + path;
}

std::string withoutVolume(const std::string& path) {
    return path.starts_with(volume) ? path.substr(volume.size()) : path;
}

bool isForbidden(const Receipt& /*receipt*/, const std::string& path) {
    return isInSystemFolder(withoutVolume(path), {});
}

/// All that a run acts on.
std::vector<std::string> pathsOf(const Receipt& receipt) {
    std::vector<std::string> paths = receipt.folders;
    paths.insert(paths.end(), receipt.menuEntries.begin(), receipt.menuEntries.end());
    for (const auto& item : receipt.items) paths.push_back(item.destination);
    for (const EntryRecord& file : receipt.files) paths.push_back(file.path);
    if (!receipt.log.empty()) paths.push_back(receipt.log);
    return paths;
}

void checkPath(const std::string& path) {
    require(path.starts_with('/') && !path.ends_with('/') && path.find('\0') == std::string::npos);
    for (const char* part : {"//", "/./", "/../"}) {
        require((path + "/").find(part) == std::string::npos);
    }
    require(!isForbidden({}, path));
}

void check(std::string_view text, const PathMapping& onDisk, const PathMapping& seen) {
    const ReadReceipt read = parsedReceipt(text, onDisk, isForbidden);
    if (!read.problem.empty()) return;
    require(isReceiptName(read.receipt.identifier));
    for (const std::string& path : pathsOf(read.receipt)) checkPath(path);
    EntryMap map;
    for (const EntryRecord& file : read.receipt.files) map.add(file);
    for (const EntryRecord& file : read.receipt.files) require(map.covers(file.path));
    const std::string written = receiptText(read.receipt, seen);
    const ReadReceipt again = parsedReceipt(written, onDisk, isForbidden);
    require(again.problem.empty() && receiptText(again.receipt, seen) == written);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::textOf(data, size);
    check(text, unchanged, unchanged);
    check(text, onVolume, withoutVolume);
    return 0;
}
