#include "linux/desktop/SystemDescription.h"

#include <fstream>
#include <iterator>
#include <optional>

#include <sys/utsname.h>

#include "foundation/text/Text.h"

namespace installer {

namespace {

std::string withoutQuotes(std::string_view value) {
    const bool isQuoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                          value.back() == value.front();
    if (isQuoted) value = value.substr(1, value.size() - 2);
    std::string text;
    for (std::size_t place = 0; place < value.size(); ++place) {
        if (value[place] == '\\' && place + 1 < value.size()) ++place;
        text += value[place];
    }
    return text;
}

std::optional<std::string> valueOf(std::string_view key, std::string_view osRelease) {
    for (const std::string& line : split(osRelease, '\n')) {
        if (line.starts_with(key) && line.size() > key.size() && line[key.size()] == '=') {
            return withoutQuotes(std::string_view(line).substr(key.size() + 1));
        }
    }
    return std::nullopt;
}

std::string contentsOf(const char* path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

std::string distributionName(std::string_view osRelease) {
    for (const char* key : {"PRETTY_NAME", "NAME"}) {
        if (auto name = valueOf(key, osRelease); name && !name->empty()) return *name;
    }
    return "Linux";
}

std::string systemDescription() {
    std::string text = distributionName(contentsOf("/etc/os-release"));
    utsname kernel{};
    if (::uname(&kernel) == 0) {
        text += std::string(", kernel ") + kernel.release + ", " + kernel.machine;
    }
    return text;
}

}  // namespace installer
