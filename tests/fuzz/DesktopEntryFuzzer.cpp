// The writer of desktop entries, which is given names and paths from property lists and disks. The
// entry is read as a desktop would read it. Input: name, executable, icon, identifier.

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/text/Text.h"
#include "linux/desktop/DesktopEntry.h"
#include "tests/fuzz/FuzzInput.h"

namespace {

using namespace installer;
using fuzz::require;

/// The value of a line, its escapes resolved.
std::string unescaped(std::string_view value) {
    std::string text;
    for (std::size_t place = 0; place < value.size(); ++place) {
        if (value[place] != '\\') {
            text += value[place];
            continue;
        }
        require(++place < value.size());
        require(value[place] == 's' || value[place] == '\\');
        text += value[place] == 's' ? ' ' : '\\';
    }
    return text;
}

/// The only word of a command line.
std::string unquoted(std::string_view command) {
    require(command.size() >= 2 && command.front() == '"' && command.back() == '"');
    command = command.substr(1, command.size() - 2);
    std::string word;
    for (std::size_t place = 0; place < command.size(); ++place) {
        const char character = command[place];
        require(character != '"' && character != '`' && character != '$');
        if (character == '\\' || character == '%') {
            require(++place < command.size());
            require(character == '\\' || command[place] == '%');
        }
        word += command[place];
    }
    return word;
}

std::string_view valueOf(std::string_view line, std::string_view key) {
    require(line.starts_with(key));
    return line.substr(key.size());
}

void checkEntry(const DesktopEntry& entry, const std::string& text) {
    require(text.ends_with('\n'));
    const std::vector<std::string> lines =
        split(std::string_view(text).substr(0, text.size() - 1), '\n');
    const bool hasIcon = lines.size() == 7;
    require(hasIcon || lines.size() == 6);
    for (const std::string& line : lines) require(!fuzz::hasControl(line));
    require(lines[0] == "[Desktop Entry]" && lines[1] == "Type=Application");
    std::string name = entry.name;
    std::ranges::replace_if(
        name, [](char character) { return fuzz::hasControl({&character, 1}); }, ' ');
    const std::string_view shown = valueOf(lines[2], "Name=");
    require(shown.empty() || shown.front() != ' ');
    require(unescaped(shown) == name);
    require(unquoted(unescaped(valueOf(lines[3], "Exec="))) == entry.executable);
    if (hasIcon) require(unescaped(valueOf(lines[4], "Icon=")) == entry.icon);
    require(lines[lines.size() - 2] == "Terminal=false");
    require(isOwnDesktopEntry(text));
}

void checkFileName(const std::string& identifier) {
    constexpr std::string_view suffix = ".desktop";
    const std::string file = desktopEntryFileName(identifier);
    require(file.size() <= 255 && file.ends_with(suffix) && file.size() > suffix.size());
    require(!file.starts_with('.') && !file.starts_with('-'));
    require(isUtf8(file) && !fuzz::hasControl(file));
    require(file.find_first_of("/\\ \"") == std::string::npos);
    // Whoever takes another's file name as an identifier gets another file.
    const std::string stem = file.substr(0, file.size() - suffix.size());
    require(stem == identifier || desktopEntryFileName(stem) != file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> parts = fuzz::parts(fuzz::textOf(data, size), 4);
    const DesktopEntry entry{parts[0], parts[1], parts[2]};
    const std::optional<std::string> text = desktopEntryText(entry);
    require(text.has_value() == (isUtf8(entry.executable) && !fuzz::hasControl(entry.executable)));
    if (text) checkEntry(entry, *text);
    checkFileName(parts[3]);
    return 0;
}
