#include "wizard/StepIndicator.h"

#include "ports/Bundle.h"
#include "ports/window/InterfaceLoader.h"
#include "ports/window/WindowPlatform.h"
#include "product/LocalizedText.h"

namespace installer {

namespace {

constexpr Color black{0, 0, 0};
constexpr Color grey{128, 128, 128};

Image dot(const Bundle& bundle, const std::string& name) {
    return {bundle.resourcePath(name, "tiff").value_or("")};
}

}  // namespace

std::unique_ptr<StepIndicator> StepIndicator::load(WindowPlatform& platform) {
    std::unique_ptr<StepIndicator> indicator(new StepIndicator(platform));
    if (!indicator->loadParts(platform)) return nullptr;
    return indicator;
}

StepIndicator::StepIndicator(const WindowPlatform& platform)
    : bundle_(platform.bundle),
      dotBlue_(dot(platform.bundle, "DotBlue")),
      dotGray_(dot(platform.bundle, "DotGray")) {}

StepIndicator::~StepIndicator() = default;

bool StepIndicator::loadParts(WindowPlatform& platform) {
    interface_ = platform.interfaces.load("Step Indicator", *this);
    if (!interface_) return false;
    stepIndicatorView_ = interface_->view("stepIndicatorView");
    indicator_ = interface_->imageView("indicator");
    label_ = interface_->textField("label");
    return true;
}

void StepIndicator::placeInParentView(const std::shared_ptr<View>& parentView,
                                      Point withPlacement) {
    if (parentView && stepIndicatorView_) {
        const Size size{parentView->size().width, stepIndicatorView_->size().height};
        // The frame is relative to the parent, so the row is added first.
        parentView->addSubview(stepIndicatorView_);
        stepIndicatorView_->setFrame(withPlacement, size);
        stepIndicatorView_->setHidden(false);
    }
    setCurrentStep(false);
}

void StepIndicator::setText(const std::optional<std::string>& text) {
    if (text && label_) label_->setText(*text);
}

void StepIndicator::setCurrentStep(bool isCurrent) {
    if (indicator_) {
        indicator_->setImage(isCurrent ? dotBlue_ : dotGray_);
        indicator_->setAccessibleName(
            localizedText(bundle_, isCurrent ? "current_step_picture_name" : "step_picture_name"));
    }
    if (!label_) return;
    label_->setSystemFont(isCurrent ? TextField::Weight::bold : TextField::Weight::regular);
    label_->setColor(isCurrent ? black : grey);
}

float StepIndicator::height() const {
    return stepIndicatorView_ ? static_cast<float>(stepIndicatorView_->size().height) : 0.0F;
}

}  // namespace installer
