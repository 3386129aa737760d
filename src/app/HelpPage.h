#pragma once

#include <string>
#include <string_view>

namespace installer {

class Bundle;

/// The product's name for use in addresses: without white space, in lower case.
[[nodiscard]] std::string helpWord(std::string_view productName);

/// The address of the product's help page. `SetupController` opens it when the user finishes the
/// wizard and `launchHelpURL` is set.
[[nodiscard]] std::string helpPageAddress(const Bundle& bundle);

}  // namespace installer
