// The event loop and the alerts of the window toolkit, which keep the contracts of those without a
// window.

#include <QMessageBox>
#include <QPushButton>
#include <optional>

#include "qt/dialogs/QtAlerts.h"
#include "qt/values/QtText.h"
#include "qt/window/QtEventLoop.h"
#include "tests/ports/AlertsContract.h"
#include "tests/ports/WatchedPipe.h"
#include "tests/qt/ModalDialog.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

namespace {

class BoxesOfTheToolkit : public AlertsScene {
  public:
    Alerts& alerts() override { return alerts_; }
    void willPress(const Alert& alert, std::size_t button) override {
        user_.reset();
        user_.emplace([title = toQt(alert.buttons.at(button))](QMessageBox& box) {
            for (auto* candidate : box.findChildren<QPushButton*>()) {
                if (!candidate->isVisible() || candidate->text() != title) continue;
                candidate->click();
                return true;
            }
            return false;
        });
    }

  private:
    FakeBundle bundle_;
    QtAlerts alerts_{bundle_};
    std::optional<WhileModal<QMessageBox>> user_;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(EventLoop, EventLoopContract,
                         testing::Values(Adapter<EventLoopScene>{
                             "Qt", makeEventLoopScene<WatchedPipe<QtEventLoop>>}),
                         AdapterName());

INSTANTIATE_TEST_SUITE_P(Alerts, AlertsContract,
                         testing::Values(Adapter<AlertsScene>{
                             "Qt",
                             []() -> std::unique_ptr<AlertsScene> {
                                 return std::make_unique<BoxesOfTheToolkit>();
                             }}),
                         AdapterName());

}  // namespace installer::test
