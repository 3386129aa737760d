#include "foundation/values/Paths.h"

#include <cstddef>

namespace installer {

namespace {

std::string_view withoutSeparatorsAtItsEnd(std::string_view path) {
    const std::size_t last = path.find_last_not_of('/');
    return last == std::string_view::npos ? std::string_view() : path.substr(0, last + 1);
}

}  // namespace

std::string joinPath(std::string_view folder, std::string_view entry) {
    if (folder.empty() || entry.empty()) {
        return withSingleSeparators(folder.empty() ? entry : folder);
    }
    std::string joined;
    joined.reserve(folder.size() + 1 + entry.size());
    joined += folder;
    joined += '/';
    joined += entry;
    const bool endsWithOne = joined.ends_with('/');
    return endsWithOne || joined.find("//") != std::string::npos ? withSingleSeparators(joined)
                                                                 : joined;
}

std::string lastPathComponent(std::string_view path) {
    const std::string_view trimmed = withoutSeparatorsAtItsEnd(path);
    if (trimmed.empty()) return path.empty() ? "" : "/";
    return std::string(trimmed.substr(trimmed.rfind('/') + 1));
}

std::string parentPath(std::string_view path) {
    const std::string_view trimmed = withoutSeparatorsAtItsEnd(path);
    if (trimmed.empty()) return path.empty() ? "" : "/";
    const std::size_t separator = trimmed.rfind('/');
    if (separator == std::string_view::npos) return "";
    return withSingleSeparators(trimmed.substr(0, separator == 0 ? 1 : separator));
}

std::string withSingleSeparators(std::string_view path) {
    // Nearly every path is right already.
    const bool endsWithOne = path.size() > 1 && path.ends_with('/');
    if (!endsWithOne && path.find("//") == std::string_view::npos) return std::string(path);
    std::string result;
    result.reserve(path.size());
    for (const char character : path) {
        if (character != '/' || !result.ends_with('/')) result += character;
    }
    if (result.size() > 1 && result.ends_with('/')) result.pop_back();
    return result;
}

}  // namespace installer
