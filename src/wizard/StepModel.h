#pragma once

#include <optional>
#include <string>

#include "foundation/observers/Observable.h"
#include "foundation/text/StyledText.h"
#include "ports/window/Image.h"

namespace installer {

/// The texts of one step. Announces changes of its own properties.
class StepModel : public Observable {
  public:
    /// The heading above the step's view; nullopt when the step has none.
    [[nodiscard]] virtual std::optional<std::string> mainLabelText() const = 0;
    /// The step's label in the list of steps.
    [[nodiscard]] virtual std::string stepIndicatorLabelText() const = 0;
    /// The explanation under the heading.
    [[nodiscard]] virtual PlainOrStyledText informativeText() const = 0;
};

/// A step model with a picture.
class HasBackgroundImage {
  public:
    virtual ~HasBackgroundImage() = default;
    [[nodiscard]] virtual Image backgroundImage() const = 0;
};

}  // namespace installer
