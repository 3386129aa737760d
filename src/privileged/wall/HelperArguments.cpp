#include "privileged/wall/HelperArguments.h"

#include <string_view>

#include "privileged/wall/Policy.h"

namespace installer {

namespace {

bool takeProgram(std::string_view name, StartedBy& startedBy) {
    if (name != "polkit" && name != "sudo") return false;
    startedBy = name == "polkit" ? StartedBy::polkit : StartedBy::sudo;
    return true;
}

/// A path that is of no use allows nothing, and is no reason to end.
bool takePath(std::string_view path, std::string& taken) {
    if (isPlainPath(path)) taken = path;
    return true;
}

bool takeFolder(std::string_view path, std::vector<std::string>& folders) {
    if (path == "/" || isPlainPath(path)) folders.emplace_back(path);
    return true;
}

bool take(std::string_view name, std::string_view value, HelperArguments& arguments) {
    if (name == "--started-by") return takeProgram(value, arguments.startedBy);
    if (name == "--volume") return takePath(value, arguments.volume);
    if (name == "--home") return takePath(value, arguments.home);
    if (name == "--into") return takeFolder(value, arguments.folders);
    return false;
}

}  // namespace

std::optional<HelperArguments> helperArguments(std::span<const char* const> words) {
    HelperArguments arguments;
    if (words.size() % 2 != 0) return std::nullopt;
    for (std::size_t place = 0; place < words.size(); place += 2) {
        if (!take(words[place], words[place + 1], arguments)) return std::nullopt;
    }
    return arguments;
}

}  // namespace installer
