#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "install/rights/OneLineTasksWithOutput.h"
#include "install/run/InstallRun.h"

namespace installer {

struct Platform;

/// Whether the error code of a privileged command means that the user will not get administrator
/// rights. These are the codes 5530 to 5540. They are the authorization statuses -60006 to -59996
/// after the command runner has cut them to 16 bits: 5530 is -60006, the user has cancelled; 5531
/// is -60005, the request was denied; the others are their neighbours.
[[nodiscard]] bool isFatalAuthCode(std::uint32_t code);

/// Every command that an install run gives as the administrator, with the exact tool and arguments.
/// Each uses the run's authorization; without one it is refused. A tool's own result is not
/// reported: the caller looks at the disk, and asks `lastCommandSucceeded` only where the user may
/// not look. Operations that return an `Outcome` set the run's
/// `authDenied` if the rights are refused, and the caller then stops. The others ignore a refusal.
class PrivilegedCommands {
  public:
    enum class Outcome { finished, refused };

    /// Both outlive this object.
    PrivilegedCommands(Platform& platform, InstallRun& run);

    /// Whether the last command says that it did what it was asked for.
    [[nodiscard]] bool lastCommandSucceeded() const { return tasks_.lastToolSucceeded(); }

    [[nodiscard]] Outcome makeFolders(const std::string& folder);
    void giveFolderToUser(const std::string& folder);

    [[nodiscard]] Outcome removeItem(const std::string& path);
    [[nodiscard]] Outcome copyItem(const std::string& source, const std::string& destination);
    /// Gives the item to the user and sets its permissions. Both commands are sent at once, and
    /// answered later: the item joins the run's installed paths when both answers have come, in the
    /// order of these calls. Refused also if the answers for an earlier item told so.
    [[nodiscard]] Outcome finishItem(const std::string& path);
    /// Waits for the answers for all items. The items whose answers did not come are not
    /// installed. Every other command does this first.
    [[nodiscard]] Outcome confirmItems();

    void removeQuarantine(const std::string& path);
    /// Starts the refresh of the application database and does not wait for its end.
    void runLsregister();

    /// Replaces the log by an empty file that the user may write to.
    void renewLogFile(const std::string& path);
    /// Makes an empty file that the user and the administrators may write to.
    void makeIdentifierFile(const std::string& path);

  private:
    using Arguments = std::vector<std::string>;
    /// An item whose commands are under way.
    struct SentItem {
        std::string path;
        PrivilegedLaunch owner;
        PrivilegedLaunch permissions;
    };
    static constexpr std::size_t mostSentItems = 64;
    enum class Output { read, leave };

    /// The error that the runner stored, or nullopt.
    std::optional<TaskError> run(const std::string& tool, const Arguments& arguments,
                                 Output output = Output::read);
    [[nodiscard]] Outcome runChecked(const std::string& tool, const Arguments& arguments,
                                     Output output = Output::read);

    [[nodiscard]] std::optional<PrivilegedLaunch> startChecked(const std::string& tool,
                                                               const Arguments& arguments);
    [[nodiscard]] Outcome confirmFirst();
    [[nodiscard]] Outcome checked(const std::optional<TaskError>& error);

    OneLineTasksWithOutput tasks_;
    InstallRun& run_;
    std::deque<SentItem> sentItems_;
};

}  // namespace installer
