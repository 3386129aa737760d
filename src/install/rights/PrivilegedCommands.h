#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "install/rights/OneLineTasksWithOutput.h"
#include "install/run/InstallRun.h"

namespace installer {

struct Platform;

/// Whether the code of a failed privileged command says that the user will not get administrator
/// rights: an authorization status from -60006 (cancelled) to -59996, as the command runner cuts
/// it to 16 bits.
[[nodiscard]] bool isFatalAuthCode(std::uint32_t code);

/// Every command that an install run gives as the administrator, under the run's authorization,
/// each with the exact tool and arguments. What a tool did is never asked: the caller looks at
/// the disk. Operations that give an outcome set the run's `authDenied` when the rights are
/// refused, and their caller then stops what it is doing; the others do not care.
class PrivilegedCommands {
  public:
    enum class Outcome { finished, refused };

    /// Both outlive this object.
    PrivilegedCommands(Platform& platform, InstallRun& run);

    [[nodiscard]] Outcome makeFolders(const std::string& folder);
    void giveFolderToUser(const std::string& folder);

    [[nodiscard]] Outcome removeItem(const std::string& path);
    [[nodiscard]] Outcome copyItem(const std::string& source, const std::string& destination);
    [[nodiscard]] Outcome giveItemToUser(const std::string& path);
    [[nodiscard]] Outcome setItemPermissions(const std::string& path);

    void removeQuarantine(const std::string& path);
    /// Starts the refresh of the application database and does not wait for its end.
    void runLsregister();

    /// An empty log file that the user may write, in place of the one that may be there.
    void renewLogFile(const std::string& path);
    /// An empty file that the user and the administrators may write.
    void makeIdentifierFile(const std::string& path);

  private:
    using Arguments = std::vector<std::string>;
    enum class Output { read, leave };

    /// The error that the runner stored, or none.
    std::optional<TaskError> run(const std::string& tool, const Arguments& arguments,
                                 Output output = Output::read);
    [[nodiscard]] Outcome runChecked(const std::string& tool, const Arguments& arguments,
                                     Output output = Output::read);

    OneLineTasksWithOutput tasks_;
    InstallRun& run_;
};

}  // namespace installer
