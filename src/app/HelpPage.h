#pragma once

#include <string>
#include <string_view>

namespace installer {

class Bundle;

// The product's help page. `SetupController` opens it when the user finishes the wizard, unless the
// user has switched that off.

/// The product's name as addresses spell it: lower case, without white space.
[[nodiscard]] std::string helpWord(std::string_view productName);

/// The address: the localized format "help_url_format" with the help word as its argument. Empty if
/// the format is missing.
[[nodiscard]] std::string helpPageAddress(const Bundle& bundle);

}  // namespace installer
