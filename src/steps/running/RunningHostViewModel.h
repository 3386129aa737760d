#pragma once

#include <optional>
#include <string>

#include "wizard/StepModel.h"

namespace installer {

struct WindowPlatform;

/// The texts of the running-host check: one set for while a host runs, one for after it has ended.
class RunningHostViewModel : public StepModel {
  public:
    explicit RunningHostViewModel(WindowPlatform& platform);

    [[nodiscard]] bool hostIsRunning() const { return host_running_; }
    /// Chooses the texts.
    void setHostIsRunning(bool running);
    /// Puts the name of what runs, and the product's, into the texts. A page without a place for
    /// the name keeps the text that it had.
    void setHostName(const std::string& name);

    [[nodiscard]] std::optional<std::string> mainLabelText() const override;
    [[nodiscard]] std::string stepIndicatorLabelText() const override;
    [[nodiscard]] PlainOrStyledText informativeText() const override;

  private:
    WindowPlatform& platform_;
    bool host_running_ = false;
    std::string mainLabelText_;
    std::string stepIndicatorLabelText_;
    StyledText runningText_;
    StyledText notRunningText_;
    // The pages that the two texts are made from; empty when they could not be read.
    StyledText runningFormatString_;
    StyledText notRunningFormatString_;
    std::string thank_you_;
};

}  // namespace installer
