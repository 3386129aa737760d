#include "privileged/wall/Policy.h"

#include <algorithm>
#include <array>
#include <climits>

#include "privileged/system/AdminGroup.h"

namespace installer {
namespace {

/// One place in a tool's arguments.
struct Argument {
    enum class Kind { nothing, text, source, path, owner };
    Kind kind = Kind::nothing;
    std::string_view text;

    constexpr Argument() = default;
    constexpr Argument(const char* fixed) : kind(Kind::text), text(fixed) {}
    constexpr explicit Argument(Kind variable) : kind(variable) {}
};

constexpr Argument source(Argument::Kind::source);
constexpr Argument path(Argument::Kind::path);
constexpr Argument owner(Argument::Kind::owner);  // the invoking user and the administrators' group

struct Rule {
    std::string_view tool;
    std::array<Argument, 3> arguments;
    Action action;
    mode_t mode = 0;
};

constexpr const char* lsregister =
    "/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/"
    "LaunchServices.framework/Versions/A/Support/lsregister";

// The whole policy. The two paths of chmod are two tools, each with its own modes.
constexpr std::array rules = {
    Rule{"/bin/mkdir", {"-m775", "-p", path}, Action::makeFolders, 0775},
    Rule{"/usr/sbin/chown", {"-R", owner, path}, Action::setOwner},
    Rule{"/bin/rm", {"-fR", path}, Action::remove},
    Rule{"/bin/cp", {"-R", source, path}, Action::copy},
    Rule{"/bin/chmod", {"-R", "0775", path}, Action::setMode, 0775},
    Rule{"/bin/chmod", {"-R", "0664", path}, Action::setMode, 0664},
    Rule{"/usr/sbin/chmod", {"-R", "0644", path}, Action::setMode, 0644},
    Rule{"/usr/bin/touch", {path}, Action::touch},
    Rule{"/usr/bin/xattr", {"-dr", "com.apple.quarantine", path}, Action::removeQuarantine},
    Rule{lsregister, {"-apps"}, Action::refreshDesktopDatabase},
};

bool isOwnerAndGroup(std::string_view text, InvokingUser& user) {
    const std::size_t colon = text.rfind(':');
    return colon != std::string_view::npos && text.substr(colon + 1) == administratorsGroupName &&
           user.isNamed(text.substr(0, colon));
}

/// Whether the text may stand in that place; paths are put into the command.
bool take(const Argument& place, const std::string& text, InvokingUser& user, Command& command) {
    switch (place.kind) {
        case Argument::Kind::nothing:
            return false;
        case Argument::Kind::text:
            return text == place.text;
        case Argument::Kind::source:
            command.source = text;
            return isPlainPath(text);
        case Argument::Kind::path:
            command.path = text;
            return isPlainPath(text);
        case Argument::Kind::owner:
            return isOwnerAndGroup(text, user);
    }
    return false;
}

std::optional<Command> matched(const Rule& rule, const ToolRequestView& request,
                               InvokingUser& user) {
    if (request.tool != rule.tool) return std::nullopt;
    const auto count = static_cast<std::size_t>(std::ranges::count_if(
        rule.arguments, [](const Argument& a) { return a.kind != Argument::Kind::nothing; }));
    if (request.arguments.size() != count) return std::nullopt;
    Command command;
    command.action = rule.action;
    command.mode = rule.mode;
    for (std::size_t index = 0; index < count; ++index) {
        if (!take(rule.arguments[index], request.arguments[index], user, command)) {
            return std::nullopt;
        }
    }
    return command;
}

}  // namespace

std::optional<Command> allowedCommand(const ToolRequestView& request, InvokingUser& user,
                                      const ProtectedFolders& folders) {
    for (const Rule& rule : rules) {
        std::optional<Command> command = matched(rule, request, user);
        if (command && !folders.hold(command->path)) return command;
    }
    return std::nullopt;
}

bool isPlainPath(std::string_view text) {
    if (!text.starts_with('/') || text.size() >= PATH_MAX) return false;
    if (text.find('\0') != std::string_view::npos) return false;
    std::string_view rest = text;
    while (!rest.empty()) {
        rest.remove_prefix(1);
        const std::string_view component = rest.substr(0, rest.find('/'));
        if (component.empty() || component == "." || component == "..") return false;
        rest.remove_prefix(component.size());
    }
    return true;
}

}  // namespace installer
