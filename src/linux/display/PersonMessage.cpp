#include "linux/display/PersonMessage.h"

#include <array>
#include <optional>
#include <vector>

#include <unistd.h>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "privileged/system/Spawn.h"

namespace installer {

namespace {

struct Dialogue {
    const char* program;
    std::vector<std::string> arguments;
};

/// As commands with the text; none of them takes it for an option or for markup.
std::array<Dialogue, 4> dialoguesFor(const std::string& text) {
    return {{{"kdialog", {"--error", text}},
             {"zenity", {"--error", "--no-markup", "--text=" + text}},
             {"xmessage", {text}},
             {"notify-send", {"--", text}}}};
}

bool isSet(const Environment& environment, const char* name) {
    return !environment(name).value_or("").empty();
}

std::optional<std::string> pathOf(const std::string& program, const Environment& environment) {
    for (const std::string& folder : split(environment("PATH").value_or("/usr/bin:/bin"), ':')) {
        std::string path = joinPath(folder, program);
        if (!folder.empty() && ::access(path.c_str(), X_OK) == 0) return path;
    }
    return std::nullopt;
}

}  // namespace

void showWithoutToolkit(const std::string& text, const Environment& environment) {
    const bool hasDisplay = isSet(environment, "DISPLAY") || isSet(environment, "WAYLAND_DISPLAY");
    if (!hasDisplay || ::isatty(STDERR_FILENO) == 1) return;
    for (const Dialogue& dialogue : dialoguesFor(text)) {
        const auto path = pathOf(dialogue.program, environment);
        if (!path) continue;
        SpawnRequest request;
        request.path = *path;
        request.arguments = dialogue.arguments;
        if (const auto process = spawn(request)) (void)waitForEnd(process.value());
        return;
    }
}

}  // namespace installer
