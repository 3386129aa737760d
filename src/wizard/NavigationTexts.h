#pragma once

#include <string>

namespace installer {

class Bundle;

/// The texts of the two buttons that go through the wizard, in the user's language.
struct NavigationTexts {
    std::string continue_string;  ///< "can't find" if the bundle lacks it, so that this is noticed
    std::string quit_string;
    std::string install_again;  ///< never shown: the completion step disables the back button
    std::string go_back;
    std::string finish_string;

    [[nodiscard]] static NavigationTexts load(const Bundle& bundle);
};

}  // namespace installer
