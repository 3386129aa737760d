#include "hosts/LightRoomHostModel.h"

#include <utility>

#include "foundation/text/Format.h"
#include "foundation/values/Paths.h"
#include "foundation/values/Uuid.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SearchPaths.h"
#include "product/LocalizedText.h"
#include "product/PlugInFilesModel.h"

namespace installer {

namespace {

// Lightroom reads presets with exactly this spacing.
constexpr const char* presetFormat =
    "s = {   id = \"%@\",\n"
    "  internalName = \"%@\",\n"
    "  title = \"%@\",\n"
    "  type = \"ExternalEditor\",\n"
    "  value = {\n"
    "  externalEditingFormat = \"%@\",\n"
    "  externalEditingFormat_dpi = 240,\n"
    "  externalEditorFullPath  = \"%@\",\n"
    "  },\n"
    "  version = 0,\n"
    "  }\n";

}  // namespace

LightRoomHostModel::LightRoomHostModel(Platform& platform, std::string hostName)
    : platform_(platform),
      hostIsInstalled_(platform.files.exists(PlugInFilesModel(platform).lightRoomPresetDir())),
      host_name_(std::move(hostName)) {}

std::string LightRoomHostModel::templateFileTextWithAppName(
    const std::string& applicationName) const {
    const std::string productName = installerText(platform_.bundle, "product_name");
    const std::string application =
        joinPath(PlugInFilesModel(platform_).standAloneAppsInstallPath(), applicationName);
    // Lightroom reads the preset when the target volume's own system runs.
    return formatted(presetFormat,
                     {newUuidText(), productName, productName, "TIFF_None_16_ProPhotoRGB",
                      platform_.searchPaths.asSeenOnTargetVolume(application)});
}

}  // namespace installer
