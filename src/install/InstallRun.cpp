#include "install/InstallRun.h"

#include <utility>

#include "foundation/Format.h"
#include "platform/SearchPaths.h"

namespace installer {

InstallRun::InstallRun(const SearchPaths& searchPaths)
    : loginName(searchPaths.loginName()), ownerString(formatted("%@:admin", {loginName})) {}

void InstallRun::begin() {
    authDenied = false;
    fileOpErrorOccurred = false;
    installedPaths.clear();
}

void InstallRun::setAuthorization(std::unique_ptr<Authorization> newAuthorization) {
    authorization = std::move(newAuthorization);
    if (authorization) authorization->setProgressSink(progress);
}

void InstallRun::setProgressSink(ProgressSink* sink) {
    progress = sink;
    if (authorization) authorization->setProgressSink(sink);
}

}  // namespace installer
