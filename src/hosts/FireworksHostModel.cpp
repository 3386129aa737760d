#include "hosts/FireworksHostModel.h"

#include <utility>

#include "foundation/values/Paths.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SearchPaths.h"

namespace installer {

FireworksHostModel::FireworksHostModel(Platform& platform, std::string hostName)
    : platform_(platform) {
    initPaths(hostName);
    hostName_ = std::move(hostName);
}

void FireworksHostModel::initPaths(const std::string& hostName) {
    const std::string folder = joinPath(platform_.searchPaths.localApplicationsFolder(), hostName);
    plugInPath_ = joinPath(folder, "Plug-Ins");
    panelsPath_ = plugInPath_;
    scriptsPath_ = plugInPath_;
}

bool FireworksHostModel::hostIsInstalled() const {
    return platform_.files.exists(plugInPath_);
}

}  // namespace installer
