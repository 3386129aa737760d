#include "linux/desktop/ApplicationName.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "foundation/values/Utf8.h"
#include "linux/bundle/PackageLayout.h"
#include "ports/Bundle.h"

namespace installer {

namespace {

constexpr std::string_view windowsSuffix = ".exe";
constexpr std::string_view packageSuffix = ".app";
constexpr std::size_t shortNameSize = 15;

constexpr std::array<std::string_view, 4> windowsLoaders = {"wine", "wine64", "wine-preloader",
                                                            "wine64-preloader"};
/// Without the version that may follow, as in "python3.11".
constexpr std::array<std::string_view, 14> interpreters = {"bash", "dash", "fish", "gjs", "ksh",
                                                           "lua",  "node", "perl", "php", "python",
                                                           "ruby", "sh",   "wish", "zsh"};

template <std::size_t count>
bool isAmong(const std::array<std::string_view, count>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool isWindowsProgram(std::string_view path) {
    return path.size() > windowsSuffix.size() &&
           equalIgnoringCase(path.substr(path.size() - windowsSuffix.size()), windowsSuffix);
}

std::string windowsName(std::string_view path) {
    path.remove_suffix(windowsSuffix.size());
    return std::string(path.substr(path.find_last_of("\\/") + 1));
}

/// The first argument is the program's path, unless the program wrote a title over it: "sshd:
/// somebody [priv]", or the whole command line with blanks in place of what separates arguments.
std::string programIn(std::string_view firstArgument) {
    const auto colon = firstArgument.find(": ");
    if (colon < firstArgument.find('/')) firstArgument = firstArgument.substr(0, colon);
    firstArgument = firstArgument.substr(0, firstArgument.find(" --"));
    // Login shells are told so by a dash before their names.
    if (firstArgument.starts_with('-')) firstArgument.remove_prefix(1);
    return std::string(firstArgument);
}

class Naming {
  public:
    Naming(const ProcessFacts& facts, Bundles& bundles)
        : facts_(facts),
          bundles_(bundles),
          program_(facts.arguments.empty() ? "" : programIn(facts.arguments.front())) {}

    [[nodiscard]] std::string name() const {
        if (const auto name = windowsProgram()) return *name;
        const std::string script = scriptPath();
        for (const std::string& path : {facts_.executable, program_, script}) {
            if (const auto name = packageName(path)) return *name;
        }
        return script.empty() ? programName() : "";
    }

  private:
    [[nodiscard]] std::optional<std::string> windowsProgram() const {
        if (isWindowsProgram(program_)) return windowsName(program_);
        if (!isAmong(windowsLoaders, lastPathComponent(program_))) return std::nullopt;
        for (const std::string& argument : facts_.arguments) {
            if (isWindowsProgram(argument)) return windowsName(argument);
        }
        return std::nullopt;
    }

    [[nodiscard]] std::optional<std::string> packageName(const std::string& executable) const {
        const auto folder = packageOfProgram(executable);
        if (!folder || !folder->ends_with(packageSuffix)) return std::nullopt;
        // A relative path is one of that process's, wherever it is.
        const auto bundle = folder->starts_with('/') ? bundles_.open(*folder) : nullptr;
        auto name = bundle ? bundle->informationValue("CFBundleName") : std::nullopt;
        if (name && !name->empty()) return name;
        const std::string folderName = lastPathComponent(*folder);
        return folderName.substr(0, folderName.size() - packageSuffix.size());
    }

    /// Whether the process still has the name that it got from the start of this file.
    [[nodiscard]] bool wasStartedAs(const std::string& path) const {
        const std::string name = lastPathComponent(path);
        return !name.empty() && name.substr(0, shortNameSize) == facts_.shortName;
    }

    /// The script that an interpreter runs; empty when there is none.
    [[nodiscard]] std::string scriptPath() const {
        const auto& arguments = facts_.arguments;
        if (arguments.size() < 2) return "";
        // A script that was started as a program gave the process its name. Its interpreter has
        // at most one argument before it.
        for (std::size_t place = 1; place < std::min<std::size_t>(arguments.size(), 3); ++place) {
            if (wasStartedAs(arguments[place]) && !wasStartedAs(program_)) return arguments[place];
        }
        std::string interpreter = lastPathComponent(program_);
        interpreter.resize(interpreter.find_last_not_of("0123456789.") + 1);
        const bool namesAScript = !arguments[1].empty() && !arguments[1].starts_with('-');
        return isAmong(interpreters, interpreter) && namesAScript ? arguments[1] : "";
    }

    [[nodiscard]] std::string programName() const {
        for (const std::string& path : {program_, facts_.executable}) {
            if (wasStartedAs(path)) return lastPathComponent(path);
        }
        // The process calls itself something else.
        for (const std::string& path : {facts_.executable, program_}) {
            if (path.find('/') != std::string::npos) return lastPathComponent(path);
        }
        return facts_.shortName;
    }

    const ProcessFacts& facts_;
    Bundles& bundles_;
    std::string program_;
};

/// File names may hold any byte; what people are shown may not.
std::string wellFormed(std::string_view text) {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string formed;
    for (std::size_t place = 0; place < text.size();) {
        const Utf8Character character = utf8CharacterAt(text, place);
        formed += character.codePoint ? text.substr(place, character.length) : replacement;
        place += character.length;
    }
    return formed;
}

}  // namespace

std::string applicationName(const ProcessFacts& facts, Bundles& bundles) {
    return wellFormed(Naming(facts, bundles).name());
}

}  // namespace installer
