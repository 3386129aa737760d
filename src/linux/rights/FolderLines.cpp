#include "linux/rights/FolderLines.h"

#include <algorithm>
#include <cstddef>

#include "foundation/text/Format.h"
#include "foundation/values/VisibleText.h"

namespace installer {

namespace {

constexpr std::size_t mostFolders = 12;
constexpr std::size_t longestPath = 160;

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Both ends of a long path: where it lies, and what it is called.
std::string shortened(const std::string& path) {
    if (path.size() <= longestPath) return path;
    std::size_t end = longestPath / 2;
    while (end > 0 && continuesCharacter(path[end])) --end;
    std::size_t next = path.size() - longestPath / 2;
    while (next < path.size() && continuesCharacter(path[next])) ++next;
    return path.substr(0, end) + "..." + path.substr(next);
}

}  // namespace

std::vector<std::string> folderLines(const std::vector<std::string>& folders,
                                     const FolderWords& words) {
    std::vector<std::string> lines;
    if (folders.empty()) return lines;
    lines.push_back(visibleText(words.heading));
    const std::size_t shown = std::min(folders.size(), mostFolders);
    for (std::size_t index = 0; index < shown; ++index) {
        lines.push_back("  " + visibleText(shortened(folders[index])));
    }
    if (shown < folders.size()) {
        const std::string count = std::to_string(folders.size() - shown);
        lines.push_back("  " + visibleText(formatted(words.more, {count})));
    }
    return lines;
}

}  // namespace installer
