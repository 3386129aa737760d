#include "tools/mkinstaller/sources/Kit.h"

#include <filesystem>
#include <system_error>

#include "foundation/values/Paths.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

std::optional<Kit> Kit::ofRunningProgram() {
    std::error_code error;
    const std::string program = std::filesystem::read_symlink("/proc/self/exe", error).string();
    if (error) return std::nullopt;
    const std::string programs = parentPath(program);
    for (const char* place : {"runtime", "../lib/mkinstaller/runtime"}) {
        const std::string folder = joinPath(programs, place);
        if (isFolder(folder)) return Kit{folder};
    }
    return std::nullopt;
}

std::string Kit::contents() const {
    return joinPath(folder, "Contents");
}

std::string Kit::resources() const {
    return joinPath(folder, "Contents/Resources");
}

std::string Kit::texts() const {
    return joinPath(folder, "texts");
}

std::string Kit::explanations() const {
    return joinPath(folder, "lint.md");
}

std::string Kit::runHead() const {
    return joinPath(folder, "run-head.sh");
}

}  // namespace installer
