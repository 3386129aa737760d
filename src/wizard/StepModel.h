#pragma once

#include <optional>
#include <string>

#include "foundation/Observable.h"

namespace installer {

/// The texts of one step. Announces changes of its own properties.
class StepModel : public Observable {
  public:
    /// The heading above the step's view; none when the step has no text at all.
    [[nodiscard]] virtual std::optional<std::string> mainLabelText() const = 0;
    /// The step's label in the list of steps.
    [[nodiscard]] virtual std::string stepIndicatorLabelText() const = 0;
    /// The explanation under the heading.
    [[nodiscard]] virtual std::string informativeText() const = 0;
};

}  // namespace installer
