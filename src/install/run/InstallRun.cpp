#include "install/run/InstallRun.h"

#include <algorithm>
#include <utility>

#include "foundation/text/Format.h"
#include "install/run/InstallProgress.h"
#include "ports/SearchPaths.h"

namespace installer {

InstallRun::InstallRun(const SearchPaths& searchPaths)
    : loginName(searchPaths.loginName()), ownerString(formatted("%@:admin", {loginName})) {}

void InstallRun::begin() {
    authDenied = false;
    fileOpErrorOccurred = false;
    installedPaths.clear();
    failedPaths.clear();
    failureReasons.clear();
    trouble = {};
}

void InstallRun::setAuthorization(std::unique_ptr<Authorization> newAuthorization) {
    authorization = std::move(newAuthorization);
    if (authorization) authorization->setProgressSink(progress);
}

void InstallRun::limitTo(WriteGrant newGrant) {
    grant = std::move(newGrant);
    if (authorization) authorization->limitTo(grant);
}

void InstallRun::setProgress(InstallProgress* newProgress) {
    progress = newProgress;
    if (authorization) authorization->setProgressSink(progress);
}

void InstallRun::recordFailure(const std::string& path) {
    fileOpErrorOccurred = true;
    if (trouble != Trouble()) failureReasons.try_emplace(path, trouble);
    if (std::find(failedPaths.begin(), failedPaths.end(), path) == failedPaths.end()) {
        failedPaths.push_back(path);
    }
}

}  // namespace installer
