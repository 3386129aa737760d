#pragma once

#include <string>

#include "foundation/text/StyledText.h"

namespace installer {

class Bundle;
class LicenseModel;
class StepModel;

// The texts of the main window and its menus, in the user's language. A missing text is empty.

[[nodiscard]] std::string productName(const Bundle& bundle);
[[nodiscard]] std::string companyName(const Bundle& bundle);

// Each is a format of the bundle, filled with the product's name.
[[nodiscard]] std::string windowTitle(const Bundle& bundle);
[[nodiscard]] std::string aboutMenuText(const Bundle& bundle);
[[nodiscard]] std::string quitMenuText(const Bundle& bundle);
[[nodiscard]] std::string hideMenuText(const Bundle& bundle);

/// Tells the user which product needs administrator rights, and what for.
[[nodiscard]] std::string authorizationReason(const Bundle& bundle);

/// The line before the folders that the installer changes with these rights, and the one that
/// stands for those that are not shown; "%@" is their number.
[[nodiscard]] std::string authorizationFolders(const Bundle& bundle);
[[nodiscard]] std::string authorizationMoreFolders(const Bundle& bundle);

/// The heading of a step, given its model or null. A null model, a model without a heading and a
/// model that throws each give a text of their own. These texts are meant for developers of a
/// wizard, so they are not translated.
[[nodiscard]] std::string mainLabelTextOf(const StepModel* model);

/// The explanation of a step, given its model or null: empty without one.
[[nodiscard]] PlainOrStyledText informativeTextOf(const StepModel* model);

/// The licence terms without styles; "nil" when there are none. Terms that are too long for a
/// window are cut, and say so at their end.
[[nodiscard]] StyledText licenseTextOf(const LicenseModel* model, const Bundle& bundle);

}  // namespace installer
