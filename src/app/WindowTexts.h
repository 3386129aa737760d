#pragma once

#include <string>

#include "foundation/text/StyledText.h"

namespace installer {

class Bundle;
class LicenseModel;
class StepModel;

// What the main window and its menus say, in the user's language. A missing text is empty.

[[nodiscard]] std::string productName(const Bundle& bundle);

// Each is a format that takes the product's name.
[[nodiscard]] std::string windowTitle(const Bundle& bundle);
[[nodiscard]] std::string aboutMenuText(const Bundle& bundle);
[[nodiscard]] std::string quitMenuText(const Bundle& bundle);
[[nodiscard]] std::string hideMenuText(const Bundle& bundle);

/// Why the administrator is asked, and by which product.
[[nodiscard]] std::string authorizationReason(const Bundle& bundle);

/// The heading of a step, given its model or null. A step without one, a model without a heading
/// and a model that fails are told apart by what stands in the heading's place: these texts are
/// for whoever puts a wizard together, so they are not translated.
[[nodiscard]] std::string mainLabelTextOf(const StepModel* model);

/// The explanation of a step, given its model or null: empty without one.
[[nodiscard]] PlainOrStyledText informativeTextOf(const StepModel* model);

/// The licence terms without styles; "nil" when there are none.
[[nodiscard]] StyledText licenseTextOf(const LicenseModel* model);

}  // namespace installer
