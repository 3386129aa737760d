#pragma once

#include <filesystem>
#include <fstream>
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

#include "tests/linux/ScratchFolder.h"

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
