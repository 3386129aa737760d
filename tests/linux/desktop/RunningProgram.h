#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/ScratchFolder.h"

namespace installer::test {

/// Arguments of programs made by `addSleeper`: they run until somebody ends them.
inline const std::vector<std::string> forever = {"1000000"};

/// A real program of that name that does nothing but run.
inline std::string addSleeper(const ScratchFolder& folder, const std::string& below) {
    const std::string path = folder.add(below, "");
    std::filesystem::copy_file(std::filesystem::canonical("/bin/sleep"), path,
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(::chmod(path.c_str(), 0755), 0);
    return path;
}

inline std::string addScript(const ScratchFolder& folder, const std::string& below,
                             const std::string& text) {
    const std::string path = folder.add(below, text);
    EXPECT_EQ(::chmod(path.c_str(), 0755), 0);
    return path;
}

/// Gives this process another first argument, as other processes see it, and no further ones. False
/// when there is no room for it.
inline bool renameThisProcess(const std::string& name) {
    std::ifstream status("/proc/self/stat");
    std::string line;
    std::getline(status, line);
    std::istringstream fields(line.substr(line.rfind(')') + 2));
    // The two numbers are the 48th and 49th of the line; the first of `fields` is its third.
    std::vector<std::string> values;
    for (std::string value; fields >> value;) values.push_back(value);
    if (values.size() < 47) return false;
    const auto start = std::stoull(values[45]);
    const auto end = std::stoull(values[46]);
    if (end - start <= name.size()) return false;
    auto* const arguments = reinterpret_cast<char*>(start);
    std::fill(arguments, arguments + (end - start), '\0');
    std::copy(name.begin(), name.end(), arguments);
    return true;
}

/// A process that is ended, and waited for, with this object. It runs the program, and the kernel
/// knows its arguments, as soon as it is made.
class RunningProgram {
  public:
    /// `arguments` without the program's name for itself, which is `name`, else its path.
    explicit RunningProgram(const std::string& path,
                            const std::vector<std::string>& arguments = forever,
                            const std::string& name = "") {
        std::vector<std::string> texts = {name.empty() ? path : name};
        texts.insert(texts.end(), arguments.begin(), arguments.end());
        std::vector<char*> pointers;
        for (std::string& text : texts) pointers.push_back(text.data());
        pointers.push_back(nullptr);
        if (::posix_spawn(&process_, path.c_str(), nullptr, nullptr, pointers.data(), environ) != 0)
            ADD_FAILURE() << "cannot start " << path;
        // The spawning process may go on a moment before the arguments are in their place.
        while (process_ >= 0 && knownArguments().empty()) ::sched_yield();
    }
    RunningProgram(RunningProgram&& other) noexcept : process_(std::exchange(other.process_, -1)) {}
    RunningProgram& operator=(RunningProgram&&) = delete;
    ~RunningProgram() { end(); }

    void kill() const { ::kill(process_, SIGKILL); }
    /// Ends it, and leaves it in the system's list as one that nobody has waited for.
    void endWithoutWaiting() const {
        kill();
        siginfo_t information{};
        ::waitid(P_PID, static_cast<id_t>(process_), &information, WEXITED | WNOWAIT);
    }
    void end() {
        if (process_ < 0) return;
        kill();
        ::waitpid(std::exchange(process_, -1), nullptr, 0);
    }

  private:
    [[nodiscard]] std::string knownArguments() const {
        std::ifstream file("/proc/" + std::to_string(process_) + "/cmdline", std::ios::binary);
        std::string text;
        std::getline(file, text, '\0');
        return text;
    }

    pid_t process_ = -1;
};

}  // namespace installer::test
