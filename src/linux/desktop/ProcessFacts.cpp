#include "linux/desktop/ProcessFacts.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <span>

#include <fcntl.h>
#include <limits.h>
#include <unistd.h>

#include "foundation/text/Text.h"
#include "privileged/files/FolderListing.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

namespace {

constexpr const char* processesFolder = "/proc";
/// PF_KTHREAD of the kernel's <linux/sched.h>, which programs cannot include.
constexpr std::uint32_t kernelThreadFlag = 0x00200000;
/// Room for a program's path and a script's.
constexpr std::size_t mostOfTheArguments = std::size_t{3} * PATH_MAX;

template <class Number>
std::optional<Number> numberIn(std::string_view text) {
    Number number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end.ec != std::errc() || end.ptr != text.data() + text.size()) return std::nullopt;
    return number;
}

std::string fileOf(pid_t process, const char* name) {
    return std::string(processesFolder) + "/" + std::to_string(process) + "/" + name;
}

/// In one read: the kernel makes these files up at that moment.
std::string firstBytes(const std::string& path, std::span<char> buffer) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file) return "";
    const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
    return count > 0 ? std::string(buffer.data(), static_cast<std::size_t>(count)) : "";
}

std::vector<std::string> argumentsOf(pid_t process) {
    std::array<char, mostOfTheArguments> buffer;
    std::string text = firstBytes(fileOf(process, "cmdline"), buffer);
    if (text.ends_with('\0')) text.pop_back();
    return text.empty() ? std::vector<std::string>() : split(text, '\0');
}

std::string executableOf(pid_t process) {
    constexpr std::string_view removed = " (deleted)";
    std::array<char, PATH_MAX> buffer;
    const ssize_t count = ::readlink(fileOf(process, "exe").c_str(), buffer.data(), buffer.size());
    if (count <= 0) return "";
    std::string path(buffer.data(), static_cast<std::size_t>(count));
    // An update replaced the file under the running program.
    if (path.ends_with(removed)) path.resize(path.size() - removed.size());
    return path;
}

/// The real user: the effective one of a set-user-ID program is not who started it.
std::optional<uid_t> userOf(pid_t process) {
    constexpr std::string_view field = "\nUid:\t";
    std::array<char, 1024> buffer;
    const std::string text = firstBytes(fileOf(process, "status"), buffer);
    const auto place = text.find(field);
    if (place == std::string::npos) return std::nullopt;
    const std::string_view value = std::string_view(text).substr(place + field.size());
    return numberIn<uid_t>(value.substr(0, value.find('\t')));
}

}  // namespace

std::optional<ProcessStatus> parsedProcessStatus(std::string_view line) {
    // PID (NAME) STATE PARENT GROUP SESSION TERMINAL TERMINALGROUP FLAGS ...
    constexpr std::size_t stateField = 0;
    constexpr std::size_t flagsField = 6;
    const auto open = line.find('(');
    const auto close = line.rfind(") ");
    if (open == std::string_view::npos || close == std::string_view::npos || close < open) {
        return std::nullopt;
    }
    const std::vector<std::string> fields = split(line.substr(close + 2), ' ');
    if (fields.size() <= flagsField) return std::nullopt;
    const auto flags = numberIn<std::uint32_t>(fields[flagsField]);
    if (!flags) return std::nullopt;
    const std::string& state = fields[stateField];
    return ProcessStatus{.shortName = std::string(line.substr(open + 1, close - open - 1)),
                         .hasEnded = state == "Z" || state == "X",
                         .isKernelThread = (*flags & kernelThreadFlag) != 0};
}

std::optional<ProcessFacts> processFacts(pid_t process) {
    std::array<char, 1024> buffer;
    auto status = parsedProcessStatus(firstBytes(fileOf(process, "stat"), buffer));
    if (!status || status->hasEnded || status->isKernelThread) return std::nullopt;
    return ProcessFacts{.shortName = std::move(status->shortName),
                        .arguments = argumentsOf(process),
                        .executable = executableOf(process),
                        .user = userOf(process)};
}

std::vector<pid_t> listedProcesses() {
    std::vector<pid_t> processes;
    const FileDescriptor folder(::open(processesFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) return processes;
    const auto entries = listFolder(folder.get());
    if (!entries) return processes;
    for (const FolderEntry& entry : entries.value()) {
        if (const auto number = numberIn<pid_t>(entry.name)) processes.push_back(*number);
    }
    return processes;
}

}  // namespace installer
