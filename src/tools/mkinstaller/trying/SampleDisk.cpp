#include "tools/mkinstaller/trying/SampleDisk.h"

#include <array>
#include <filesystem>

#include "foundation/values/Paths.h"
#include "tools/mkinstaller/making/StarterPayload.h"

namespace installer {

namespace {

namespace fs = std::filesystem;

/// By which files a release is found.
enum class Traces {
    pathsWithPlugIns,     ///< a paths file that names its plug-in folder too
    pathsAlone,           ///< a paths file that names the application's folder only
    pathsInAdobesFolder,  ///< a paths file with plug-ins, in Adobe's own folder
    settings,             ///< no paths file, only the folder of settings
};

struct Release {
    const char* name;
    Traces traces;
};

constexpr std::array<Release, 6> releases = {{
    {"Adobe Photoshop CS6", Traces::pathsInAdobesFolder},
    {"Adobe Photoshop CC", Traces::pathsAlone},
    {"Adobe Photoshop CC 2015", Traces::pathsWithPlugIns},
    {"Adobe Photoshop CC 2015.5", Traces::pathsWithPlugIns},
    {"Adobe Photoshop CC 2019", Traces::settings},
    {"Adobe Photoshop Elements 2018", Traces::pathsWithPlugIns},
}};

std::error_code makeFolder(const std::string& path) {
    std::error_code error;
    fs::create_directories(path, error);
    return error;
}

std::error_code addApplication(const std::string& disk, const std::string& name) {
    const std::string folder = disk + "/Applications/" + name;
    if (const auto error = makeFolder(folder + "/Plug-Ins")) return error;
    const std::string contents = folder + "/" + name + ".app/Contents";
    const std::string program = contents + "/MacOS/" + name;
    if (const auto error = writeFile(program, "#!/bin/sh\n")) return error;
    std::error_code error;
    fs::permissions(program, fs::perms::group_exec | fs::perms::others_exec | fs::perms::owner_exec,
                    fs::perm_options::add, error);
    if (error) return error;
    return writeFile(contents + "/Info.plist", starterPropertyList({{"CFBundleName", name},
                                                                    {"CFBundleExecutable", name},
                                                                    {"CFBundlePackageType", "APPL"},
                                                                    {"CFBundleVersion", "1.0.0"}}));
}

std::error_code addTraces(const std::string& library, const Release& release) {
    const std::string name = release.name;
    const std::string preferences = library + "/Preferences/";
    if (release.traces == Traces::settings) return makeFolder(preferences + name + " Settings");
    // The paths are those that the disk's own system sees, each ended by a zero.
    std::string paths = "/Applications/" + name + '\0';
    if (release.traces != Traces::pathsAlone) paths += "/Applications/" + name + "/Plug-Ins" + '\0';
    const std::string folder = release.traces == Traces::pathsInAdobesFolder
                                   ? library + "/Application Support/Adobe/"
                                   : preferences;
    return writeFile(folder + name + " Paths", paths);
}

}  // namespace

std::error_code fillSampleDisk(const std::string& folder, const std::string& login) {
    const std::string library = joinPath(folder, "Users/" + login + "/Library");
    for (const Release& release : releases) {
        if (const auto error = addApplication(folder, release.name)) return error;
        if (const auto error = addTraces(library, release)) return error;
    }
    // Where releases from 2019 on look for plug-ins.
    return makeFolder(joinPath(folder, "Library/Application Support/Adobe/Plug-Ins/CC"));
}

}  // namespace installer
