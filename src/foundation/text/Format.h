#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace installer {

/// `format` with its placeholders filled in: "%@" takes the next argument, "%1$@" the first,
/// "%2$@" the second and so on; "%%" gives one percent sign. A placeholder without an argument
/// gives nothing; any other percent sign stands as it is. Formats come from text tables that the
/// plug-in maker writes: no text in them can make this fail.
[[nodiscard]] std::string formatted(std::string_view format,
                                    std::initializer_list<std::string_view> arguments);

}  // namespace installer
