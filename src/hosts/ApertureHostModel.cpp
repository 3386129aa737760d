#include "hosts/ApertureHostModel.h"

#include <utility>

#include "foundation/Paths.h"
#include "install/PlugInFilesModel.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/SearchPaths.h"

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
