#include "tools/mkinstaller/making/StarterPayload.h"

#include <filesystem>
#include <fstream>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "tools/mkinstaller/making/NewProduct.h"
#include "tools/mkinstaller/sources/SampleNames.h"

namespace installer {

namespace {

namespace fs = std::filesystem;

constexpr const char* readMe = R"(# @PRODUCT@ by @COMPANY@

The sources of an installer. Names, texts and pages are in the folders LANG.lproj, the version and the
identifier in Info.plist, the icon is AppIcon.png.

    mkinstaller lint .                  says what is wrong with them
    mkinstaller try .                   installs them on a sample disk and shows what happens
    mkinstaller build . --output DIR    puts the installer together in DIR
    mkinstaller pack . --output DIR     makes one file for customers of it

| folder | what belongs there |
|---|---|
| `files/HD` | packages and product folders, where they lie on the disk from its root |
| `files/PHOTOSHOP` | what goes into the folder of each Photoshop |
| `files/PHOTOSHOP_PLUGINS` | what goes into the plug-in folder of each Photoshop |
| `files/LIGHTROOM` | what goes into Lightroom's folder of the user |
| `SharedSupport/PlugIn` | plug-ins by whose names earlier copies are found |
| `SharedSupport/AutoLayer` | the same for their companions |
| `SharedSupport/Standalone` | programs that are started once |

What is there now are small stand-ins: put your own files in their place.
)";

constexpr const char* program = "#!/bin/sh\n# A stand-in: put the plug-in itself here.\nexit 0\n";

std::error_code writeProgram(const std::string& path) {
    if (const auto error = writeFile(path, program)) return error;
    std::error_code error;
    fs::permissions(path,
                    fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                        fs::perms::others_read | fs::perms::others_exec,
                    error);
    return error;
}

std::error_code writePlugIn(const std::string& package, const NewProductNames& names) {
    const std::string contents = joinPath(package, "Contents");
    const std::string information =
        starterPropertyList({{"CFBundleIdentifier", names.identifier + ".plugin"},
                             {"CFBundleName", names.product},
                             {"CFBundleExecutable", names.product},
                             {"CFBundlePackageType", "8BFM"},
                             {"CFBundleShortVersionString", "1.0.0"},
                             {"CFBundleVersion", "1.0.0"}});
    if (const auto error = writeFile(joinPath(contents, "Info.plist"), information)) return error;
    return writeProgram(joinPath(joinPath(contents, "MacOS"), names.product));
}

}  // namespace

std::string escapedForXml(std::string_view text) {
    return replacingAll(replacingAll(replacingAll(text, "&", "&amp;"), "<", "&lt;"), ">", "&gt;");
}

std::error_code writeFile(const std::string& path, std::string_view contents) {
    std::error_code error;
    fs::create_directories(parentPath(path), error);
    if (error) return error;
    std::ofstream file(path, std::ios::binary);
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    file.close();
    return file ? std::error_code() : std::make_error_code(std::errc::io_error);
}

std::string starterPropertyList(const std::vector<std::pair<std::string, std::string>>& values) {
    std::string list =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\">\n<dict>\n";
    for (const auto& [key, value] : values) {
        list += "\t<key>" + key + "</key>\n\t<string>" + escapedForXml(value) + "</string>\n";
    }
    return list + "</dict>\n</plist>\n";
}

std::error_code writeStarterPayload(const std::string& folder, const NewProductNames& names) {
    const auto named = [&](std::string_view text) {
        return replacingEach(text, {{"@PRODUCT@", names.product}, {"@COMPANY@", names.company}});
    };
    struct File {
        const char* path;
        const char* contents;
    };
    for (const auto& [path, contents] :
         {File{"README.md", readMe},
          File{"files/HD/Library/Application Support/@COMPANY@/@PRODUCT@/Read Me.txt",
               "@PRODUCT@ by @COMPANY@\n"},
          File{"files/PHOTOSHOP/Presets/Scripts/@PRODUCT@.jsx",
               "// A stand-in: put the product's script here.\n"}}) {
        if (const auto error = writeFile(joinPath(folder, named(path)), named(contents))) {
            return error;
        }
    }
    for (const char* empty : {"files/LIGHTROOM", "SharedSupport/PlugIn", "SharedSupport/AutoLayer",
                              "SharedSupport/Standalone"}) {
        std::error_code error;
        fs::create_directories(joinPath(folder, empty), error);
        if (error) return error;
    }
    return writePlugIn(
        joinPath(folder, named("files/PHOTOSHOP_PLUGINS/@COMPANY@/@PRODUCT@.plugin")), names);
}

}  // namespace installer
