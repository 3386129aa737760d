#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ports/window/Image.h"
#include "ports/window/View.h"
#include "wizard/BoundObject.h"

namespace installer {

class Bundle;
class Interface;
struct WindowPlatform;

/// One row of the list of steps: a dot and the step's label. Its description has no bindings: this
/// class sets what the row shows.
class StepIndicator : public BoundObject {
  public:
    /// A row that is not in the window yet; null when its description cannot be loaded.
    [[nodiscard]] static std::unique_ptr<StepIndicator> load(WindowPlatform& platform);

    ~StepIndicator() override;

    /// Adds the row to the list, as wide as the list, with its lower left corner at the point. The
    /// row is shown as one of a step that is not current. A null list shows nothing.
    void placeInParentView(const std::shared_ptr<View>& parentView, Point withPlacement);

    /// nullopt leaves the label as it is.
    void setText(const std::optional<std::string>& text);

    void setCurrentStep(bool isCurrent);

    /// 0 when there is no row to show.
    [[nodiscard]] float height() const;

  private:
    explicit StepIndicator(const WindowPlatform& platform);
    [[nodiscard]] bool loadParts(WindowPlatform& platform);

    const Bundle& bundle_;
    std::shared_ptr<View> stepIndicatorView_;
    std::shared_ptr<ImageView> indicator_;
    std::shared_ptr<TextField> label_;
    Image dotBlue_;
    Image dotGray_;
    std::unique_ptr<Interface> interface_;
};

}  // namespace installer
