#include "install/rights/OneLineTasksWithOutput.h"

#include <array>
#include <memory>
#include <span>
#include <string_view>

#include "foundation/text/Text.h"
#include "foundation/values/Utf8.h"
#include "install/rights/TaskOutputReader.h"
#include "ports/Authorization.h"
#include "ports/ChildProcess.h"
#include "ports/EventLoop.h"

namespace installer {
namespace {

constexpr std::size_t chunkSize = 64;

void store(std::optional<TaskError>* slot, std::optional<TaskError> error) {
    if (slot != nullptr) *slot = std::move(error);
}

TaskError failedRun(std::string reason) {
    TaskError error;
    error.code = TaskError::launchFailed;
    error.localizedDescription = std::move(reason);
    return error;
}

TaskError warning(std::string standardError) {
    TaskError error;
    error.code = TaskError::wroteToStandardError;
    error.userInformation["standardError"] = std::move(standardError);
    return error;
}

TaskError refusedLaunch(std::int32_t code) {
    TaskError error;
    error.code = code;
    return error;
}

/// The low 16 bits with their sign, on purpose: -60006 becomes 5530, and it is these small
/// positive codes that callers compare with.
std::int32_t truncated(std::int32_t status) {
    return static_cast<std::int16_t>(static_cast<std::uint32_t>(status) & 0xffffU);
}

/// Each chunk is decoded by itself. Each byte that is not part of a whole character in its chunk
/// becomes U+FFFD, so a character that a chunk's end cuts in two is lost.
std::string decodedChunk(std::string_view chunk) {
    if (isUtf8(chunk)) return std::string(chunk);
    std::string text;
    while (!chunk.empty()) {
        const Utf8Character character = utf8CharacterAt(chunk, 0);
        text += character.codePoint ? chunk.substr(0, character.length) : "\uFFFD";
        chunk.remove_prefix(character.length);
    }
    return text;
}

/// Fills the chunk as far as the tool's output goes: a stream may deliver less at a time.
std::string_view readChunk(PrivilegedTool& tool, std::array<char, chunkSize>& chunk) {
    std::size_t filled = 0;
    while (filled < chunk.size()) {
        const std::size_t count = tool.readOutput(std::span(chunk).subspan(filled));
        if (count == 0) break;
        filled += count;
    }
    return {chunk.data(), filled};
}

std::string readOutput(PrivilegedTool& tool) {
    std::array<char, chunkSize> buffer;
    // The first chunk is thrown away. Callers rely on nothing that it holds.
    readChunk(tool, buffer);
    std::string text;
    for (;;) {
        const std::string_view chunk = readChunk(tool, buffer);
        if (chunk.empty()) return text;
        text += decodedChunk(chunk);
    }
}

PrivilegedLaunch launched(Authorization& authorization, const std::string& path,
                          const std::vector<std::string>& arguments, bool wait) {
    PrivilegedLaunch launch = authorization.execute(path, arguments);
    if (wait && launch.tool != nullptr) launch.tool->waitUntilEnded();
    return launch;
}

}  // namespace

/// The status of the launch; if that is 0, the status of the tool, which may have been lost since.
std::int32_t OneLineTasksWithOutput::statusNow(const PrivilegedLaunch& launch) {
    lastToolSucceeded_ = launch.tool != nullptr && launch.tool->hasSucceeded();
    if (truncated(launch.status) != 0 || launch.tool == nullptr) return truncated(launch.status);
    return truncated(launch.tool->status());
}

std::optional<std::string> OneLineTasksWithOutput::stringByLaunchingPathWithArguments(
    const std::string& path, const std::vector<std::string>& arguments,
    std::optional<TaskError>* error) {
    TaskOutputReader reader(processes_.create(path, arguments), eventLoop_);
    if (const std::error_code failure = reader.launchTaskAndRunSynchronous()) {
        store(error, failedRun("cannot run " + path + ": " + failure.message()));
        return std::nullopt;
    }
    std::optional<std::string> result = decodedUtf8(reader.standardOutputData());
    std::optional<std::string> standardError = decodedUtf8(reader.standardErrorData());
    if (!result || !standardError) {
        store(error, failedRun("the output of " + path + " is not UTF-8 text"));
        return std::nullopt;
    }
    store(error, standardError->empty() ? std::nullopt
                                        : std::optional(warning(std::move(*standardError))));
    return result;
}

std::optional<std::string> OneLineTasksWithOutput::stringByLaunchingPathWithArguments(
    const std::string& path, const std::vector<std::string>& arguments,
    Authorization& authorization, std::optional<TaskError>* error, bool wait) {
    const PrivilegedLaunch launch = launched(authorization, path, arguments, wait);
    return resultOf(launch, error);
}

PrivilegedLaunch OneLineTasksWithOutput::start(const std::string& path,
                                               const std::vector<std::string>& arguments,
                                               Authorization& authorization,
                                               std::optional<TaskError>* error) {
    PrivilegedLaunch launch = authorization.execute(path, arguments);
    const std::int32_t status = truncated(launch.status);
    store(error, status != 0 ? std::optional(refusedLaunch(status)) : std::nullopt);
    return launch;
}

std::optional<std::string> OneLineTasksWithOutput::finish(const PrivilegedLaunch& launch,
                                                          std::optional<TaskError>* error) {
    if (launch.tool != nullptr) launch.tool->waitUntilEnded();
    return resultOf(launch, error);
}

std::optional<std::string> OneLineTasksWithOutput::resultOf(const PrivilegedLaunch& launch,
                                                            std::optional<TaskError>* error) {
    std::string output = launch.tool != nullptr ? readOutput(*launch.tool) : std::string();
    const std::int32_t status = statusNow(launch);
    if (status != 0) {
        store(error, refusedLaunch(status));
        return std::nullopt;
    }
    store(error, std::nullopt);
    return output;
}

void OneLineTasksWithOutput::authorizedLaunchPath(const std::string& path,
                                                  const std::vector<std::string>& arguments,
                                                  Authorization& authorization,
                                                  std::optional<TaskError>* error, bool wait) {
    const PrivilegedLaunch launch = launched(authorization, path, arguments, wait);
    const std::int32_t status = statusNow(launch);
    store(error, status != 0 ? std::optional(refusedLaunch(status)) : std::nullopt);
}

}  // namespace installer
