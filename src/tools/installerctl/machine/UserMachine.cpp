#include "tools/installerctl/machine/UserMachine.h"

#include <utility>

#include <unistd.h>

#include "app/texts/WindowTexts.h"
#include "linux/bundle/PackageLayout.h"
#include "linux/process/Environment.h"
#include "linux/rights/LinuxAuthorization.h"

namespace installer {

namespace {

std::unique_ptr<Authorizations> administratorRights(const std::string& bundleFolder,
                                                    const Bundle& bundle,
                                                    const LinuxSearchPaths& searchPaths) {
    return std::make_unique<LinuxAuthorizations>(AdministratorAccess{
        .helper = {.path = packageProgram(bundleFolder, "privileged-helper").value_or(""),
                   .volume = searchPaths.targetVolume(),
                   .home = searchPaths.homeOnRunningSystem()},
        .reason = authorizationReason(bundle),
        .folderWords = {.heading = authorizationFolders(bundle),
                        .more = authorizationMoreFolders(bundle)},
        .announce = tellPeople});
}

}  // namespace

UserMachine::UserMachine(std::string bundleFolder, std::string login, LinuxSearchPaths searchPaths)
    : bundleFolder_(std::move(bundleFolder)),
      login_(std::move(login)),
      searchPaths_(std::move(searchPaths)),
      bundle_(bundleFolder_, searchPaths_.preferredLanguages(), notes_),
      bundles_(searchPaths_.preferredLanguages(), notes_),
      files_(notes_),
      fileQueries_(eventLoop_),
      processes_(eventLoop_),
      authorizations_(administratorRights(bundleFolder_, bundle_, searchPaths_)),
      preferences_(searchPaths_, notes_),
      applications_(searchPaths_, bundles_, notes_) {}

Result<std::unique_ptr<UserMachine>> UserMachine::of(const UserAccount& user,
                                                     const std::string& bundleFolder,
                                                     const std::string& targetVolume) {
    const Environment environment = [&](const std::string& name) -> std::optional<std::string> {
        if (name == targetVolumeVariable && !targetVolume.empty()) return targetVolume;
        return processEnvironment()(name);
    };
    const auto own = userNumbered(::geteuid());
    const std::string ownName = own ? own.value().name : std::to_string(::geteuid());
    const bool isEffectiveUser = user.home.empty() && ownName == user.name;
    auto paths = isEffectiveUser ? LinuxSearchPaths::fromEnvironment(environment)
                                 : LinuxSearchPaths::forHomeOf(user, environment);
    if (!paths) return paths.error();
    return std::make_unique<UserMachine>(bundleFolder, user.name, std::move(paths).value());
}

Platform UserMachine::platform() {
    return {files_,       fileQueries_, authorizations_, processes_,    eventLoop_,
            preferences_, bundle_,      bundles_,        searchPaths_,  applications_,
            alerts_,      notes_,       clock_,          notifications_};
}

}  // namespace installer
