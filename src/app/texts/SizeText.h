#pragma once

#include <cstdint>
#include <string>

namespace installer {

class Bundle;

/// A size for people, such as "3.2 MB": in thousands, at least one kilobyte, with one decimal
/// below ten of its unit.
[[nodiscard]] std::string sizeText(const Bundle& bundle, std::uint64_t bytes);

}  // namespace installer
