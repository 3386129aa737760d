#include "steps/licence/LicenseController.h"

#include <utility>

#include "foundation/text/Format.h"
#include "ports/Alerts.h"
#include "ports/Platform.h"
#include "ports/window/View.h"
#include "product/LocalizedText.h"
#include "steps/licence/LicenseModel.h"

namespace installer {

namespace {

Alert agreementAlert(const Bundle& bundle) {
    return {.identifier = "license-agreement",
            .style = Alert::Style::informational,
            .title = formatted(localizedText(bundle, "agree_message"),
                               {installerText(bundle, "product_name")}),
            .message = localizedText(bundle, "agree_information"),
            .buttons = {localizedText(bundle, "agree_button"),
                        localizedText(bundle, "disagree_button")}};
}

}  // namespace

bool LicenseController::canProceed(std::int32_t direction) {
    if (direction < 0 || agreed_) return true;
    // The window handles events while the question is open: another press is no answer to it.
    if (isAsking_) return false;
    isAsking_ = true;
    const Alert alert = agreementAlert(platform_.bundle);
    const auto button = static_cast<std::int32_t>(platform_.alerts.runModal(alert));
    isAsking_ = false;
    sheetDidEnd(alert, firstButtonReturn + button, nullptr);
    return agreed_;
}

void LicenseController::sheetDidEnd(const Alert& /*alert*/, std::int32_t returnCode,
                                    const void* /*contextInfo*/) {
    agreed_ = returnCode == firstButtonReturn;
}

void LicenseController::didEnterWithModel(std::shared_ptr<StepModel> model,
                                          std::shared_ptr<View> view,
                                          MainController* mainController,
                                          std::int32_t /*direction*/) {
    model_ = std::dynamic_pointer_cast<LicenseModel>(std::move(model));
    view_ = std::move(view);
    if (view_) view_->setHidden(false);
    mainController_ = mainController;
}

void LicenseController::didProceed(std::int32_t /*direction*/) {
    model_.reset();
    if (view_) view_->setHidden(true);
    view_.reset();
}

}  // namespace installer
