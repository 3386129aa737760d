#include <algorithm>
#include <string>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "tools/mkinstaller/making/StarterPayload.h"
#include "tools/mkinstaller/packing/BundleArchive.h"
#include "tools/mkinstaller/packing/Formats.h"
#include "tools/mkinstaller/packing/ToolScript.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

/// The head with everything but its sum, which depends on what follows it.
std::string headOf(const std::string& pattern, const PackSource& source) {
    const auto lines = std::ranges::count(pattern, '\n');
    return replacingAll(replacingAll(pattern, "@TITLE@", source.title()), "@LINES@",
                        std::to_string(lines + 1));
}

}  // namespace

Packed packRunFile(const PackSource& source, const Kit& kit, const std::string& folder) {
    const std::string file = source.fileTitle() + "-" + source.version + ".run";
    const auto pattern = contentsOf(kit.runHead());
    if (!pattern) return {file, "the kit lacks " + kit.runHead()};
    const std::string work = source.newWorkFolder("run");
    const std::string head = work + "/head";
    if (const auto error = writeFile(head, headOf(*pattern, source))) {
        return {file, head + " cannot be written: " + error.message()};
    }
    const ToolScript script{
        .what = "Packing " + file,
        .text = std::string(archiveCommand) +
                "sum=$({ head -n 1 \"$5\"; tail -n +3 \"$5\"; cat \"$4.gz\"; } | sha256sum)\n"
                "{ sed \"2s/@SUM@/${sum%% *}/\" \"$5\"; cat \"$4.gz\"; } > \"$6.new\"\n"
                "chmod 755 \"$6.new\"\nmv \"$6.new\" \"$6\"\n",
        .arguments = {source.bundleFolder(), lastPathComponent(source.bundle()),
                      std::to_string(source.time), work + "/archive", head, joinPath(folder, file)},
        .needed = {"tar", "gzip", "sha256sum", "sed"}};
    return {file, runScript(script)};
}

}  // namespace installer
