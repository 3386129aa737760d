#include "foundation/values/Paths.h"

#include <cstddef>

namespace installer {

std::string joinPath(std::string_view folder, std::string_view entry) {
    if (folder.empty() || entry.empty()) {
        return withSingleSeparators(folder.empty() ? entry : folder);
    }
    std::string joined(folder);
    joined += '/';
    joined += entry;
    return withSingleSeparators(joined);
}

std::string lastPathComponent(std::string_view path) {
    std::string single = withSingleSeparators(path);
    const std::size_t separator = single.rfind('/');
    if (single == "/" || separator == std::string::npos) return single;
    return single.substr(separator + 1);
}

std::string parentPath(std::string_view path) {
    const std::string single = withSingleSeparators(path);
    const std::size_t separator = single.rfind('/');
    if (separator == std::string::npos) return "";
    return single.substr(0, separator == 0 ? 1 : separator);
}

std::string withSingleSeparators(std::string_view path) {
    std::string result;
    result.reserve(path.size());
    for (const char character : path) {
        if (character != '/' || !result.ends_with('/')) result += character;
    }
    if (result.size() > 1 && result.ends_with('/')) result.pop_back();
    return result;
}

}  // namespace installer
