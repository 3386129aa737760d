// The alerts without a window of their own that keep the contract.

#include <optional>
#include <string>

#include "linux/display/DisplayAlerts.h"
#include "tests/ports/AlertsContract.h"
#include "tests/support/AlertsOnlyModule.h"

namespace installer::test {

namespace {

std::optional<std::string> environmentWithDisplay(const std::string& name) {
    return name == "DISPLAY" ? std::optional<std::string>(":7") : std::nullopt;
}

class BoxesOnADisplay : public AlertsScene {
  public:
    Alerts& alerts() override { return alerts_; }
    void willPress(const Alert& /*alert*/, std::size_t button) override {
        module_.shown.answer = button;
    }

  private:
    RecordingLog log_;
    AlertsOnlyModule module_;
    DisplayAlerts alerts_{log_, environmentWithDisplay, [this] { return &module_; }};
};

class AnswersInMemory : public AlertsScene {
  public:
    Alerts& alerts() override { return alerts_; }
    void willPress(const Alert& /*alert*/, std::size_t button) override { alerts_.answer = button; }

  private:
    RecordingAlerts alerts_;
};

template <class Scene>
std::unique_ptr<AlertsScene> makeAlertsScene() {
    return std::make_unique<Scene>();
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Alerts, AlertsContract,
    testing::Values(Adapter<AlertsScene>{"Linux", makeAlertsScene<BoxesOnADisplay>},
                    Adapter<AlertsScene>{"Fake", makeAlertsScene<AnswersInMemory>}),
    AdapterName());

}  // namespace installer::test
