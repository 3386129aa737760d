#include "tools/mkinstaller/lint/texts/Placeholders.h"

#include <algorithm>

#include "foundation/text/Text.h"

namespace installer {

std::optional<std::vector<int>> placeholdersOf(std::string_view format) {
    std::vector<int> numbers;
    int following = 1;
    for (auto place = format.find('%'); place != std::string_view::npos;
         place = format.find('%', place)) {
        const std::string_view rest = format.substr(place + 1);
        const auto digits = std::min(rest.find_first_not_of("0123456789"), rest.size());
        if (rest.starts_with('%')) {
            place += 2;
        } else if (rest.starts_with('@')) {
            numbers.push_back(following++);
            place += 2;
        } else if (digits > 0 && rest.substr(digits).starts_with("$@")) {
            numbers.push_back(integerValue(rest));
            place += 1 + digits + 2;
        } else {
            return std::nullopt;
        }
    }
    std::ranges::sort(numbers);
    return numbers;
}

}  // namespace installer
