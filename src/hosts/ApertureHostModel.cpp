#include "hosts/ApertureHostModel.h"

#include <utility>

#include "foundation/values/Paths.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SearchPaths.h"
#include "product/PlugInFilesModel.h"

namespace installer {

ApertureHostModel::ApertureHostModel(Platform& platform, std::string hostName)
    : platform_(platform),
      hostIsInstalled_(
          platform.files.exists(parentPath(PlugInFilesModel(platform).apertureUserPluginDir()))),
      host_name_(std::move(hostName)) {}

std::string ApertureHostModel::appPath() const {
    return platform_.searchPaths.onTargetVolume("/Applications/Aperture");
}

}  // namespace installer
