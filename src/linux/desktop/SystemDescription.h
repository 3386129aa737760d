#pragma once

#include <string>
#include <string_view>

namespace installer {

/// The distribution's name for people in the contents of an os-release file: PRETTY_NAME, else
/// NAME, else "Linux". Quotes and backslashes are resolved as a shell does.
[[nodiscard]] std::string distributionName(std::string_view osRelease);

/// The running system in one line: the distribution, the kernel's release and the processor.
[[nodiscard]] std::string systemDescription();

}  // namespace installer
