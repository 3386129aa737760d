#include "linux/desktop/DesktopEntry.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "foundation/text/Text.h"

namespace installer {

namespace {

/// No other program names its entries like this, so no entry of the desktop or of the user is
/// replaced, and none of the machine's is shadowed, whatever an application calls itself.
constexpr std::string_view namePrefix = "com.quarrytone.installer.";
constexpr std::string_view ownMark = "X-Quarrytone-Installer=true\n";

bool isControl(char character) {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

bool canBeExpressed(const std::string& path) {
    return isUtf8(path) && std::none_of(path.begin(), path.end(), isControl);
}

/// A value as the file's grammar wants it: a backslash begins an escape, spaces at its start would
/// be left away.
std::string escapedValue(std::string_view value) {
    std::string escaped;
    for (const char original : value) {
        const char character = isControl(original) ? ' ' : original;
        if (character == ' ' && escaped.empty())
            escaped += "\\s";
        else if (character == '\\')
            escaped += "\\\\";
        else
            escaped += character;
    }
    return escaped;
}

/// The command line that starts the executable. Its own quoting comes first, the file's on top of
/// it: a backslash in the path ends up as four.
std::string commandLine(const std::string& executable) {
    std::string quoted = "\"";
    for (const char character : executable) {
        if (std::string_view("\"`$\\").find(character) != std::string_view::npos) quoted += '\\';
        if (character == '%') quoted += '%';
        quoted += character;
    }
    return escapedValue(quoted + '"');
}

std::string hashText(std::string_view text) {
    std::uint32_t hash = 2166136261u;
    for (const char character : text)
        hash = (hash ^ static_cast<unsigned char>(character)) * 16777619u;
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "%08x", static_cast<unsigned>(hash));
    return digits.data();
}

/// Whether the name ends as one with a hash does.
bool seemsHashed(std::string_view name) {
    constexpr std::size_t length = 9;
    return name.size() >= length && name[name.size() - length] == '-' &&
           name.find_first_not_of("0123456789abcdef", name.size() - length + 1) == name.npos;
}

bool isSafe(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '.' || character == '-' ||
           character == '_';
}

}  // namespace

std::optional<std::string> desktopEntryText(const DesktopEntry& entry) {
    if (!canBeExpressed(entry.executable)) return std::nullopt;
    std::string text =
        "[Desktop Entry]\n"
        "Type=Application\n"
        "Name=" +
        escapedValue(entry.name) + "\nExec=" + commandLine(entry.executable) + "\n";
    if (!entry.icon.empty() && canBeExpressed(entry.icon))
        text += "Icon=" + escapedValue(entry.icon) + "\n";
    return text + "Terminal=false\n" + std::string(ownMark);
}

bool isOwnDesktopEntry(std::string_view text) {
    return text.starts_with(ownMark) || text.find("\n" + std::string(ownMark)) != text.npos;
}

std::string desktopEntryFileName(const std::string& identifier) {
    constexpr std::size_t longest = 200;
    std::string name = identifier.substr(0, longest);
    std::replace_if(
        name.begin(), name.end(), [](char character) { return !isSafe(character); }, '-');
    if (name.starts_with('.') || name.starts_with('-')) name.insert(0, "_");
    if (name.empty()) name = "application";
    // What had to be changed could now be the name of another application, and another could have
    // chosen the name that comes of this.
    if (name != identifier || seemsHashed(name)) name += "-" + hashText(identifier);
    return std::string(namePrefix) + name + ".desktop";
}

}  // namespace installer
