#include "linux/desktop/MenuIcon.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "linux/bundle/PackageLayout.h"

namespace installer {

namespace {

constexpr std::size_t largestMenuEntry = std::size_t{64} << 10U;
constexpr std::size_t mostMenuEntries = 4000;

/// The larger ones first: they are made smaller, not larger.
constexpr std::array<const char*, 6> themeSizes = {"128x128", "256x256",  "64x64",
                                                   "48x48",   "scalable", "32x32"};
constexpr std::array<const char*, 3> menuIconTypes = {".png", ".svg", ".xpm"};

struct MenuEntry {
    std::string program;
    std::string icon;
};

bool isMenuFile(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

std::vector<std::string> dataFolders(const Environment& environment) {
    std::vector<std::string> folders;
    const auto add = [&folders](const std::string& folder) {
        if (folder.starts_with('/')) folders.push_back(folder);
    };
    if (const auto own = environment("XDG_DATA_HOME")) {
        add(*own);
    } else if (const auto home = environment("HOME")) {
        add(joinPath(*home, ".local/share"));
    }
    const std::string shared = environment("XDG_DATA_DIRS").value_or("");
    for (const std::string& folder :
         split(shared.empty() ? "/usr/local/share:/usr/share" : shared, ':')) {
        add(folder);
    }
    return folders;
}

/// The first word of a command line, which may be quoted.
std::string firstCommandWord(std::string_view line) {
    if (line.starts_with('"')) {
        line.remove_prefix(1);
        return std::string(line.substr(0, line.find('"')));
    }
    return std::string(line.substr(0, line.find(' ')));
}

MenuEntry readMenuEntry(const std::string& path) {
    std::string text(largestMenuEntry, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    MenuEntry entry;
    bool isInEntry = false;
    for (const std::string& line : split(text, '\n')) {
        if (line.starts_with('[')) isInEntry = line.starts_with("[Desktop Entry]");
        if (!isInEntry) continue;
        if (line.starts_with("Exec="))
            entry.program = firstCommandWord(std::string_view(line).substr(5));
        if (line.starts_with("Icon=")) entry.icon = trimmed(std::string_view(line).substr(5));
    }
    return entry;
}

bool startsProgram(const MenuEntry& entry, const std::string& program) {
    // A plain name is looked for in PATH.
    const bool isName = entry.program.find('/') == std::string::npos;
    return entry.program == (isName ? lastPathComponent(program) : program);
}

Image themeIcon(const std::string& name, const std::vector<std::string>& folders) {
    if (name.starts_with('/')) return {isMenuFile(name) ? name : ""};
    if (!isPlainFileName(name)) return {};
    std::vector<std::string> places;
    for (const std::string& folder : folders) {
        for (const char* size : themeSizes) {
            places.push_back(joinPath(folder, std::string("icons/hicolor/") + size + "/apps"));
        }
        places.push_back(joinPath(folder, "pixmaps"));
    }
    for (const std::string& place : places) {
        for (const char* type : menuIconTypes) {
            std::string path = joinPath(place, name + type);
            if (isMenuFile(path)) return {std::move(path)};
        }
    }
    return {};
}

}  // namespace

Image menuIcon(const std::string& program, const Environment& environment) {
    const std::vector<std::string> folders = dataFolders(environment);
    std::size_t count = 0;
    for (const std::string& folder : folders) {
        std::error_code error;
        std::filesystem::directory_iterator entry(joinPath(folder, "applications"), error);
        for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            const std::string path = entry->path().string();
            if (!path.ends_with(".desktop") || !isMenuFile(path)) continue;
            if (++count > mostMenuEntries) return {};
            const MenuEntry found = readMenuEntry(path);
            if (startsProgram(found, program)) return themeIcon(found.icon, folders);
        }
    }
    return {};
}

}  // namespace installer
