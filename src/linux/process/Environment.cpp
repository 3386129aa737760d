#include "linux/process/Environment.h"

#include <cstdlib>

namespace installer {

Environment processEnvironment() {
    return [](const std::string& name) -> std::optional<std::string> {
        const char* value = std::getenv(name.c_str());
        if (value == nullptr) return std::nullopt;
        return value;
    };
}

}  // namespace installer
