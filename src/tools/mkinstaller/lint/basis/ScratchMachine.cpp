#include "tools/mkinstaller/lint/basis/ScratchMachine.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace installer {

namespace {

std::string newFolder() {
    std::error_code error;
    std::string name =
        (std::filesystem::temp_directory_path(error) / "mkinstaller-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "no temporary folder can be made");
    }
    return name;
}

LinuxSearchPaths searchPathsOn(const std::string& disk, const std::string& login) {
    return LinuxSearchPaths({.home = "/Users/" + login,
                             .ownHomes = {},
                             .dataHome = {},
                             .loginName = login,
                             .targetVolume = disk,
                             .languages = {"en"}});
}

}  // namespace

ScratchMachine::ScratchMachine(Bundle& bundle, SystemLog& log, const std::string& login)
    : disk_(newFolder()),
      bundle_(bundle),
      log_(log),
      searchPaths_(searchPathsOn(disk_, login)),
      bundles_({"en"}, log),
      files_(log, LinkPolicy::follow),
      fileQueries_(eventLoop_),
      processes_(eventLoop_),
      // Nothing is installed here, so nobody is ever asked.
      authorizations_({.helper = {}, .reason = "", .announce = {}}),
      preferences_(searchPaths_, log),
      applications_(searchPaths_, bundles_, log),
      alerts_(log) {}

ScratchMachine::~ScratchMachine() {
    std::error_code ignored;
    if (!isKept_) std::filesystem::remove_all(disk_, ignored);
}

Platform ScratchMachine::platform() {
    return {files_,       fileQueries_, authorizations_, processes_,    eventLoop_,
            preferences_, bundle_,      bundles_,        searchPaths_,  applications_,
            alerts_,      log_,         clock_,          notifications_};
}

}  // namespace installer
