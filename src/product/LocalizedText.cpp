#include "product/LocalizedText.h"

#include <optional>

#include "foundation/text/Text.h"
#include "ports/Bundle.h"

namespace installer {

namespace {

constexpr const char* defaultTable = "Localizable";
constexpr const char* installerTable = "installer";

/// True when a path with the name in it leads to a folder of that name, and to no other one.
bool canNameFolder(const std::string& name) {
    bool hasComponent = false;
    for (const std::string& component : split(name, '/')) {
        if (component == "." || component == "..") return false;
        hasComponent = hasComponent || !component.empty();
    }
    return hasComponent;
}

}  // namespace

std::string localizedText(const Bundle& bundle, const std::string& key,
                          const std::string& fallback) {
    return bundle.localizedString(key, defaultTable).value_or(fallback);
}

std::string installerText(const Bundle& bundle, const std::string& key) {
    return bundle.localizedString(key, installerTable).value_or("");
}

std::string folderName(const Bundle& bundle, const std::string& key) {
    const std::optional<std::string> name = bundle.localizedString(key, installerTable);
    return name && canNameFolder(*name) ? *name : key;
}

}  // namespace installer
