#include "privileged/helper/HelperArguments.h"

#include <string_view>

namespace installer {

namespace {

std::optional<StartedBy> program(std::string_view name) {
    if (name == "polkit") return StartedBy::polkit;
    if (name == "sudo") return StartedBy::sudo;
    return std::nullopt;
}

}  // namespace

std::optional<HelperArguments> helperArguments(std::span<const char* const> words) {
    HelperArguments arguments;
    if (words.empty()) return arguments;
    if (words.size() != 2 || std::string_view(words[0]) != "--started-by") return std::nullopt;
    const std::optional<StartedBy> startedBy = program(words[1]);
    if (!startedBy) return std::nullopt;
    arguments.startedBy = *startedBy;
    return arguments;
}

}  // namespace installer
