#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace installer {

/// `format` with its placeholders replaced: "%@" by the next argument, "%1$@" by the first, "%2$@"
/// by the second and so on. "%%" becomes one percent sign. A placeholder without an argument
/// becomes the empty text. Any other percent sign stays. Product makers write the formats, so no
/// format makes this fail.
[[nodiscard]] std::string formatted(std::string_view format,
                                    std::initializer_list<std::string_view> arguments);

}  // namespace installer
