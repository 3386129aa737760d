#include "tools/mkinstaller/sources/Identifiers.h"

#include <algorithm>
#include <array>
#include <vector>

#include "foundation/text/Text.h"

namespace installer {

namespace {

struct Owner {
    std::string_view prefix;
    const char* name;
};

// Makers and projects whose programs many machines have. Not complete: it catches an identifier
// that was copied along with somebody else's package.
constexpr std::array<Owner, 15> owners = {{
    {"com.adobe.", "Adobe"},
    {"com.apple.", "Apple"},
    {"com.canonical.", "Canonical"},
    {"com.google.", "Google"},
    {"com.microsoft.", "Microsoft"},
    {"com.skype.", "Microsoft"},
    {"com.valvesoftware.", "Valve"},
    {"org.blender.", "Blender"},
    {"org.freedesktop.", "freedesktop.org"},
    {"org.gimp.", "GIMP"},
    {"org.gnome.", "GNOME"},
    {"org.inkscape.", "Inkscape"},
    {"org.kde.", "KDE"},
    {"org.libreoffice.", "LibreOffice"},
    {"org.mozilla.", "Mozilla"},
}};

constexpr std::array<std::string_view, 5> folders = {"Adobe", "Apple", "Google", "Microsoft",
                                                     "Mozilla"};

bool isPart(const std::string& part) {
    constexpr std::string_view known =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-";
    return !part.empty() && part.find_first_not_of(known) == std::string::npos &&
           !part.starts_with('-');
}

}  // namespace

bool isReverseDomain(std::string_view text) {
    const std::vector<std::string> parts = split(text, '.');
    return parts.size() >= 2 && std::ranges::all_of(parts, isPart) &&
           !equalIgnoringCase(parts.front(), "www");
}

std::string domainOf(const std::string& identifier) {
    std::vector<std::string> parts = split(identifier, '.');
    if (parts.size() > 2) parts.pop_back();
    std::string host;
    for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
        if (!host.empty()) host += '.';
        host += *part;
    }
    return host;
}

std::optional<std::string> knownOwnerOf(std::string_view identifier) {
    const std::string lower = lowerCased(identifier);
    const auto found = std::ranges::find_if(
        owners, [&](const Owner& owner) { return lower.starts_with(owner.prefix); });
    if (found == owners.end()) return std::nullopt;
    return found->name;
}

bool isFolderOfKnownMaker(std::string_view company) {
    return std::ranges::any_of(
        folders, [&](std::string_view folder) { return equalIgnoringCase(folder, company); });
}

}  // namespace installer
