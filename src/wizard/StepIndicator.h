#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ports/window/Image.h"
#include "ports/window/View.h"
#include "wizard/BoundObject.h"

namespace installer {

class Interface;
struct WindowPlatform;

/// One row of the list of steps: a dot and the step's label. Its description binds nothing to
/// properties: what the row shows is set here.
class StepIndicator : public BoundObject {
  public:
    /// A row that is not in the window yet; null when its description cannot be loaded.
    [[nodiscard]] static std::unique_ptr<StepIndicator> load(WindowPlatform& platform);

    ~StepIndicator() override;

    /// Puts the row into the list, as wide as the list is, with its lower left corner at the
    /// point. It is not that of the current step, whichever step that is. Without a list nothing
    /// is shown.
    void placeInParentView(const std::shared_ptr<View>& parentView, Point withPlacement);

    /// Without a text the row keeps the label that it has.
    void setText(const std::optional<std::string>& text);

    void setCurrentStep(bool isCurrent);

    /// 0 when there is no row to show.
    [[nodiscard]] float height() const;

  private:
    explicit StepIndicator(const WindowPlatform& platform);
    [[nodiscard]] bool loadParts(WindowPlatform& platform);

    std::shared_ptr<View> stepIndicatorView_;
    std::shared_ptr<ImageView> indicator_;
    std::shared_ptr<TextField> label_;
    Image dotBlue_;
    Image dotGray_;
    std::unique_ptr<Interface> interface_;
};

}  // namespace installer
