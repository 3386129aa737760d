#include "tools/mkinstaller/packing/PackageTree.h"

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "tools/mkinstaller/making/StarterPayload.h"
#include "tools/mkinstaller/packing/PackageTexts.h"
#include "tools/mkinstaller/packing/ToolScript.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

/// The width of the picture, as its file says; desktops look for icons by size.
std::string widthOf(const std::string& picture) {
    constexpr std::size_t end = 24;
    const std::string bytes = startOf(picture, end).value_or("");
    if (bytes.size() < end) return "256";
    unsigned width = 0;
    for (std::size_t place = 16; place < 20; ++place) {
        width = width << 8U | static_cast<unsigned char>(bytes[place]);
    }
    return std::to_string(width);
}

std::string iconFile(const PackSource& source) {
    return source.bundle() + "/Contents/Resources/AppIcon.png";
}

}  // namespace

PackagePlaces::PackagePlaces(const PackSource& source) : name(source.packageName() + "-installer") {
    const std::string size = widthOf(iconFile(source));
    company = "/usr/lib/" + source.companySlug();
    folder = company + "/" + source.productSlug();
    contents = folder + "/Installer.app/Contents";
    command = "/usr/bin/" + name;
    entry = "/usr/share/applications/" + name + ".desktop";
    icon = "/usr/share/icons/hicolor/" + size + "x" + size + "/apps/" + name + ".png";
    actionName = lowerCased(source.identifier) + ".install";
    action = "/usr/share/polkit-1/actions/" + actionName + ".policy";
    manual = "/usr/share/man/man1/" + name + ".1";
    notes = "/usr/share/doc/" + name;
}

std::optional<std::string> makePackageTree(const PackSource& source, const PackagePlaces& places,
                                           const std::string& root) {
    const std::vector<std::pair<std::string, std::string>> texts = {
        {places.command, commandText(source, places)},
        {places.entry, desktopEntryOf(source, places)},
        {places.action, polkitActionOf(source, places)},
        {places.manual, manualOf(source, places)},
        {places.notes + "/copyright", copyrightOf(source)}};
    for (const auto& [path, text] : texts) {
        if (const auto error = writeFile(root + path, text)) {
            return root + path + " cannot be written: " + error.message();
        }
    }
    return runScript(
        {.what = "Copying the installer",
         .text = "mkdir -p \"$2\" \"${3%/*}\"\n"
                 "cp -a \"$1/Contents\" \"$2\"\n"
                 "cp \"$1/Contents/Resources/AppIcon.png\" \"$3\"\n"
                 "gzip -9 --no-name \"$5\"\n"
                 "chmod -R u+rw,go-w,a+rX \"$6\"\n"
                 "chmod 755 \"$4\"\n",
         .arguments = {source.bundle(), root + parentPath(places.contents), root + places.icon,
                       root + places.command, root + places.manual, root},
         .needed = {"gzip"}});
}

}  // namespace installer
