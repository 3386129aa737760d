#include "tools/mkinstaller/packing/ToolScript.h"

#include <cmath>
#include <cstdlib>

#include <sys/wait.h>
#include <unistd.h>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "privileged/system/Spawn.h"
#include "tools/mkinstaller/sources/Folders.h"
#include "tools/terminal/LiveLine.h"

namespace installer {

namespace {

/// The wait status. How far a packing program is nobody knows, but that it goes on.
Result<int> awaitEnd(pid_t process, const std::string& what) {
    LiveLine line(LiveLine::standardError());
    return waitForEnd(process, [&] {
        if (line.isDue())
            line.show(what + ": " + std::to_string(std::lround(line.seconds())) + " s");
    });
}

}  // namespace

bool hasProgram(const std::string& name) {
    const char* path = std::getenv("PATH");
    for (const std::string& folder : split(path == nullptr ? "/usr/bin:/bin" : path, ':')) {
        if (!folder.empty() && ::access(joinPath(folder, name).c_str(), X_OK) == 0) return true;
    }
    return false;
}

std::string firstLineOf(const std::string& path) {
    return split(contentsOf(path).value_or(""), '\n').front();
}

std::optional<std::string> runScript(const ToolScript& script) {
    for (const std::string& program : script.needed) {
        if (!hasProgram(program)) return "the program \"" + program + "\" is not installed";
    }
    SpawnRequest request;
    request.path = "/bin/sh";
    request.arguments = {"-euc", script.text, "mkinstaller"};
    request.arguments.insert(request.arguments.end(), script.arguments.begin(),
                             script.arguments.end());
    // What they print must not be taken for the names of the files that were made.
    request.standardOutput = STDERR_FILENO;
    request.standardError = SpawnRequest::own;
    const auto process = spawn(request);
    if (!process) return "the shell could not be started: " + process.error().message();
    const auto status = awaitEnd(process.value(), script.what);
    if (status && WIFEXITED(status.value()) && WEXITSTATUS(status.value()) == 0) {
        return std::nullopt;
    }
    return "a packing program failed";
}

}  // namespace installer
