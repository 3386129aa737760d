#include <algorithm>
#include <string>

#include "foundation/values/Paths.h"
#include "tools/mkinstaller/making/StarterPayload.h"
#include "tools/mkinstaller/packing/BundleArchive.h"
#include "tools/mkinstaller/packing/Formats.h"
#include "tools/mkinstaller/packing/ToolScript.h"
#include "tools/mkinstaller/sources/Folders.h"
#include "tools/mkinstaller/sources/SampleNames.h"

namespace installer {

namespace {

/// The head with everything but its sum, which depends on what follows it.
std::string headOf(const std::string& pattern, const PackSource& source, Compression compression) {
    const auto lines = std::ranges::count(pattern, '\n');
    return replacingEach(pattern, {{"@TITLE@", source.title()},
                                   {"@LINES@", std::to_string(lines + 1)},
                                   {"@PROGRAM@", programOf(compression)}});
}

}  // namespace

Packed packRunFile(const PackSource& source, const Kit& kit, Compression compression,
                   const std::string& folder) {
    const std::string file = source.fileTitle() + "-" + source.version + ".run";
    const auto pattern = contentsOf(kit.runHead());
    if (!pattern) return {file, "the kit lacks " + kit.runHead()};
    const std::string work = source.newWorkFolder("run");
    const std::string head = work + "/head";
    if (const auto error = writeFile(head, headOf(*pattern, source, compression))) {
        return {file, head + " cannot be written: " + error.message()};
    }
    const ToolScript script{
        .what = "Packing " + file,
        .text = archiveCommand(compression) +
                "sum=$({ head -n 1 \"$5\"; tail -n +3 \"$5\"; cat \"$4.packed\"; } | sha256sum)\n"
                "{ sed \"2s/@SUM@/${sum%% *}/\" \"$5\"; cat \"$4.packed\"; } > \"$6.new\"\n"
                "chmod 755 \"$6.new\"\nmv \"$6.new\" \"$6\"\n",
        .arguments = {source.bundleFolder(), lastPathComponent(source.bundle()),
                      std::to_string(source.time), work + "/archive", head, joinPath(folder, file)},
        .needed = {"tar", programOf(compression), "sha256sum", "sed"}};
    return {file, runScript(script)};
}

}  // namespace installer
