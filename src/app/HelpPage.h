#pragma once

#include <string>
#include <string_view>

namespace installer {

class Bundle;

/// The product's name as it stands in addresses: without white space, in small letters.
[[nodiscard]] std::string helpWord(std::string_view productName);

/// The address of the product's help page.
[[nodiscard]] std::string helpPageAddress(const Bundle& bundle);

}  // namespace installer
