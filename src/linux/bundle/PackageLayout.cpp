#include "linux/bundle/PackageLayout.h"

#include "foundation/values/Paths.h"
#include "ports/Bundle.h"

namespace installer {

namespace {

constexpr const char* programsFolder = "Contents/MacOS";

}  // namespace

bool isPlainFileName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

std::optional<std::string> packageProgram(const std::string& package, const std::string& name) {
    if (!isPlainFileName(name)) return std::nullopt;
    return joinPath(joinPath(package, programsFolder), name);
}

std::optional<std::string> namedProgram(const std::string& package, const Bundle& bundle) {
    return packageProgram(package, bundle.informationValue("CFBundleExecutable").value_or(""));
}

std::optional<std::string> packageOfProgram(const std::string& program) {
    const std::string folder = parentPath(program);
    std::string package = parentPath(parentPath(folder));
    if (folder != joinPath(package, programsFolder)) return std::nullopt;
    return package;
}

}  // namespace installer
