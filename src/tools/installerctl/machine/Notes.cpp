#include "tools/installerctl/machine/Notes.h"

#include <iostream>
#include <ranges>

#include "foundation/values/VisibleText.h"

namespace installer {

std::string Notes::lastAbout(const std::string& path) const {
    for (const std::string& line : std::views::reverse(lines_)) {
        if (line.find(path) != std::string::npos && line.find("error") != std::string::npos) {
            return line;
        }
    }
    return {};
}

void tellPeople(std::string_view line) {
    std::cerr << "installerctl: " << visibleText(line) << '\n';
}

}  // namespace installer
