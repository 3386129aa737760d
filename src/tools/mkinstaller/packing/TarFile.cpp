#include "foundation/values/Paths.h"
#include "tools/mkinstaller/packing/BundleArchive.h"
#include "tools/mkinstaller/packing/Formats.h"
#include "tools/mkinstaller/packing/ToolScript.h"

namespace installer {

Packed packTarFile(const PackSource& source, const std::string& folder) {
    const std::string file = source.fileTitle() + "-" + source.version + ".tar.gz";
    const std::string work = source.newWorkFolder("tar");
    const ToolScript script{
        .what = "Packing " + file,
        .text = archiveCommand(Compression::gzip) +
                "cp \"$4.packed\" \"$5.new\"\nmv \"$5.new\" \"$5\"\n",
        .arguments = {source.bundleFolder(), lastPathComponent(source.bundle()),
                      std::to_string(source.time), work + "/archive", joinPath(folder, file)},
        .needed = {"tar", "gzip"}};
    return {file, runScript(script)};
}

}  // namespace installer
