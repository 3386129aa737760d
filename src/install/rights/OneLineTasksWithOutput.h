#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ports/Authorization.h"

namespace installer {

class ChildProcesses;
class EventLoop;

/// Why a tool could not be run. A tool that ran and failed gives no error.
struct TaskError {
    /// The unprivileged run could not launch the tool or read its output.
    static constexpr std::int32_t launchFailed = -1;
    /// The unprivileged run has a result, but the tool also wrote to its standard error.
    static constexpr std::int32_t wroteToStandardError = -2;
    static constexpr const char* errorDomain = "com.apple.NSTask.OneLineTasksWithOutput";

    std::string domain = errorDomain;
    std::int32_t code = 0;
    std::string localizedDescription;
    std::map<std::string, std::string> userInformation;
};

/// The command runner: runs one tool with a list of arguments and returns its output as one text.
/// No operation throws. No operation has a time-out: a tool that never ends blocks the caller. If
/// the caller gives an error slot, it always receives a value: the error, or nullopt.
class OneLineTasksWithOutput {
  public:
    OneLineTasksWithOutput(ChildProcesses& processes, EventLoop& eventLoop)
        : processes_(processes), eventLoop_(eventLoop) {}

    /// Runs the tool as the current user and turns the event loop until it ends. A text together
    /// with `wroteToStandardError` is a success with a warning; nullopt is a failure. In reserve:
    /// no run calls it.
    std::optional<std::string> stringByLaunchingPathWithArguments(
        const std::string& path, const std::vector<std::string>& arguments,
        std::optional<TaskError>* error);

    /// Runs the tool as the administrator and blocks the caller. If the launch is refused, the
    /// result is nullopt, and the error's code is the low 16 bits of the authorization status, with
    /// their sign. The tool's exit status is ignored. The first 64 bytes of the tool's output are
    /// never in the result, on purpose. With `wait` false, the tool's end is not waited for, but
    /// its output is still read to the end.
    std::optional<std::string> stringByLaunchingPathWithArguments(
        const std::string& path, const std::vector<std::string>& arguments,
        Authorization& authorization, std::optional<TaskError>* error, bool wait);

    /// The same without reading the tool's output.
    void authorizedLaunchPath(const std::string& path, const std::vector<std::string>& arguments,
                              Authorization& authorization, std::optional<TaskError>* error,
                              bool wait);

    /// Starts a tool whose end the caller awaits later, with `finish`. A refused launch stores its
    /// error at once.
    [[nodiscard]] PrivilegedLaunch start(const std::string& path,
                                         const std::vector<std::string>& arguments,
                                         Authorization& authorization,
                                         std::optional<TaskError>* error);

    /// The rest of the first privileged operation for such a tool: its end, its output, its error.
    std::optional<std::string> finish(const PrivilegedLaunch& launch,
                                      std::optional<TaskError>* error);

    /// Whether the last tool that was run as the administrator has ended and said that it
    /// succeeded. No result depends on it: it is for a caller who cannot look at what the tool did.
    [[nodiscard]] bool lastToolSucceeded() const { return lastToolSucceeded_; }

  private:
    std::optional<std::string> resultOf(const PrivilegedLaunch& launch,
                                        std::optional<TaskError>* error);
    [[nodiscard]] std::int32_t statusNow(const PrivilegedLaunch& launch);

    ChildProcesses& processes_;
    EventLoop& eventLoop_;
    bool lastToolSucceeded_ = false;
};

}  // namespace installer
