#include "foundation/text/NamePattern.h"

#include <cstddef>
#include <optional>

#include "foundation/values/Utf8.h"

namespace installer {

bool isLike(std::string_view name, std::string_view pattern) {
    struct Place {
        std::size_t inName = 0;
        std::size_t inPattern = 0;
    };
    Place place;
    // Only the last "*" is tried again: it can match everything that an earlier one could.
    std::optional<Place> afterAsterisk;
    while (place.inName < name.size()) {
        const bool hasMore = place.inPattern < pattern.size();
        if (hasMore && pattern[place.inPattern] == '*') {
            ++place.inPattern;
            afterAsterisk = place;
        } else if (hasMore && pattern[place.inPattern] == '?') {
            ++place.inPattern;
            place.inName += utf8CharacterAt(name, place.inName).length;
        } else if (hasMore && pattern[place.inPattern] == name[place.inName]) {
            ++place.inPattern;
            ++place.inName;
        } else if (afterAsterisk) {
            afterAsterisk->inName += utf8CharacterAt(name, afterAsterisk->inName).length;
            place = *afterAsterisk;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', place.inPattern) == std::string_view::npos;
}

}  // namespace installer
