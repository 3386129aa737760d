#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace installer {

class Authorization;
class ChildProcesses;
class EventLoop;

/// Why a tool could not be run. A tool that ran and failed is not an error.
struct TaskError {
    /// The unprivileged run could not launch the tool or read its output.
    static constexpr std::int32_t launchFailed = -1;
    /// The unprivileged run gave a result, and the tool wrote to its standard error.
    static constexpr std::int32_t wroteToStandardError = -2;
    static constexpr const char* errorDomain = "com.apple.NSTask.OneLineTasksWithOutput";

    std::string domain = errorDomain;
    std::int32_t code = 0;
    std::string localizedDescription;
    std::map<std::string, std::string> userInformation;
};

/// Runs one tool with a list of arguments and gives what it wrote as one text. None throws, none
/// has a time-out: a tool that never ends blocks the caller. An error slot, where one is given, is
/// always stored to: the error, or none.
class OneLineTasksWithOutput {
  public:
    OneLineTasksWithOutput(ChildProcesses& processes, EventLoop& eventLoop)
        : processes_(processes), eventLoop_(eventLoop) {}

    /// Runs the tool as the current user and keeps the event loop turning meanwhile. A result
    /// together with `wroteToStandardError` is a success with a warning; none is a failure.
    std::optional<std::string> stringByLaunchingPathWithArguments(
        const std::string& path, const std::vector<std::string>& arguments,
        std::optional<TaskError>* error);

    /// Runs the tool as the administrator. A launch that was refused gives none and an error whose
    /// code is the authorization status cut to its low 16 bits; the tool's own exit status is
    /// nobody's concern. The first 64 bytes of what the tool writes are never in the result, on
    /// purpose. `wait` false skips the wait for the tool's end; its output is read to the end all
    /// the same. Blocks the caller.
    std::optional<std::string> stringByLaunchingPathWithArguments(
        const std::string& path, const std::vector<std::string>& arguments,
        Authorization& authorization, std::optional<TaskError>* error, bool wait);

    /// The same without reading the tool's output.
    void authorizedLaunchPath(const std::string& path, const std::vector<std::string>& arguments,
                              Authorization& authorization, std::optional<TaskError>* error,
                              bool wait);

  private:
    ChildProcesses& processes_;
    EventLoop& eventLoop_;
};

}  // namespace installer
