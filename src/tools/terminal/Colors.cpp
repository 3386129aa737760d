#include "tools/terminal/Colors.h"

#include <cstdlib>
#include <string_view>

#include <unistd.h>

namespace installer {

bool isStandardOutputTerminal() {
    return ::isatty(STDOUT_FILENO) == 1;
}

Colors colorsOfStandardOutput() {
    const char* noColor = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    const bool isWanted = noColor == nullptr || *noColor == '\0';
    const bool isAble = terminal != nullptr && std::string_view(terminal) != "dumb";
    return isWanted && isAble && isStandardOutputTerminal() ? Colors::terminal : Colors::none;
}

}  // namespace installer
