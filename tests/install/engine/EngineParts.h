#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "install/engine/DestinationFolders.h"
#include "install/engine/FileErrorAlerts.h"
#include "install/engine/FileInstaller.h"
#include "install/rights/PrivilegedCommands.h"
#include "install/run/InstallRun.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

inline const std::string lsregisterTool =
    "/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/"
    "LaunchServices.framework/Versions/A/Support/lsregister";
inline const std::string lsregisterCommand = lsregisterTool + " -apps";

inline const std::string payload = "/Installer.app/Contents/Resources/files";
inline const std::string mirror = payload + "/HD";

/// The texts that the engine looks up, and a maker called Acme with the product Filters 2.
inline void addTexts(FakePlatform& fake) {
    fake.bundle.tables["Localizable"] = {{"installing_file", "Installing "},
                                         {"install_error_title", "Sorry"},
                                         {"install_error_format_string", "[%@] failed at %@"},
                                         {"install_error_proceed", "Go on"},
                                         {"install_error_stop", "Stop"}};
}

/// The journal without the waits for privileged tools: what was changed, and in which order.
inline std::vector<std::string> operationsOf(const FakePlatform& fake) {
    std::vector<std::string> operations = fake.journal;
    std::erase(operations, "wait");
    return operations;
}

/// Makes the privileged command of that place, counted from 1, and all later ones fail.
inline void refuseFromCommand(FakePlatform& fake, int place, std::int32_t status = -60006) {
    fake.authorizations.status = [place, status,
                                  count = 0](const std::vector<std::string>&) mutable {
        return ++count >= place ? status : 0;
    };
}

/// Makes every launch of that tool fail, and no other.
inline void refuseTool(FakePlatform& fake, const std::string& tool, std::int32_t status = -60006) {
    fake.authorizations.status = [tool, status](const std::vector<std::string>& command) {
        return command.front() == tool ? status : 0;
    };
}

/// Makes one kind of the user's own file operations fail, as on a disk that is not theirs.
inline void failOperation(FakePlatform& fake, const std::string& name) {
    fake.files.setFault([name](const RecordingFileManager::Operation& operation) {
        return operation.front() == name ? std::make_error_code(std::errc::permission_denied)
                                         : std::error_code();
    });
}

/// The parts of the engine below the controller, wired as the controller does it, in a run whose
/// authorization is there.
class EngineParts {
  public:
    EngineParts() {
        addTexts(fake);
        run.setAuthorization(fake.authorizations.create());
    }

    FakePlatform fake;
    InstallRun run{fake.searchPaths};
    PrivilegedCommands commands{fake.platform, run};
    DestinationFolders folders{fake.platform, run, commands};
    FileErrorAlerts errors{fake.platform, run};
    std::vector<std::string> texts;  ///< shown to the user
    FileInstaller installer{
        fake.platform, run,    commands,
        folders,       errors, [this](const std::string& text) {
                                texts.push_back(text); }};

    [[nodiscard]] std::vector<std::string> operations() const { return operationsOf(fake); }
};

}  // namespace installer::test
