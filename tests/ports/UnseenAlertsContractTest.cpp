// What all alerts promise where nobody can be asked.

#include <memory>
#include <optional>
#include <string>

#include "linux/display/DisplayAlerts.h"
#include "linux/display/TextAlerts.h"
#include "tests/ports/Adapter.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

/// Alerts that nobody sees, and their log.
class UnseenAlertsScene {
  public:
    virtual ~UnseenAlertsScene() = default;
    [[nodiscard]] virtual Alerts& alerts() = 0;
    [[nodiscard]] std::string logged() const { return log_.text(); }

  protected:
    RecordingLog log_;
};

namespace {

class TextsOnly : public UnseenAlertsScene {
  public:
    Alerts& alerts() override { return alerts_; }

  private:
    TextAlerts alerts_{log_};
};

class WithoutDisplay : public UnseenAlertsScene {
  public:
    Alerts& alerts() override { return alerts_; }

  private:
    DisplayAlerts alerts_{
        log_, [](const std::string&) -> std::optional<std::string> { return std::nullopt; },
        []() -> WindowModule* {
            ADD_FAILURE() << "nothing is loaded";
            return nullptr;
        }};
};

class WithoutModule : public UnseenAlertsScene {
  public:
    Alerts& alerts() override { return alerts_; }

  private:
    DisplayAlerts alerts_{log_, [](const std::string&) { return std::optional<std::string>(":7"); },
                          []() -> WindowModule* { return nullptr; }};
};

template <class Scene>
std::unique_ptr<UnseenAlertsScene> makeUnseenAlertsScene() {
    return std::make_unique<Scene>();
}

}  // namespace

class UnseenAlertsContract : public Contract<UnseenAlertsScene> {};

TEST_P(UnseenAlertsContract, TheTextsAreLoggedAndTheAnswerIsTheFirstButton) {
    Alerts& alerts = scene_->alerts();
    EXPECT_EQ(alerts.runModal({"ask", Alert::Style::warning, "Problem", "With /a", {"Go", "Stop"}}),
              0U);
    EXPECT_EQ(alerts.runModal({"tell", Alert::Style::informational, "", "Only this", {"OK"}}), 0U);
    EXPECT_EQ(scene_->logged(), "Problem: With /a\nOnly this\n");
}

INSTANTIATE_TEST_SUITE_P(
    UnseenAlerts, UnseenAlertsContract,
    testing::Values(
        Adapter<UnseenAlertsScene>{"TextsOnly", makeUnseenAlertsScene<TextsOnly>},
        Adapter<UnseenAlertsScene>{"WithoutDisplay", makeUnseenAlertsScene<WithoutDisplay>},
        Adapter<UnseenAlertsScene>{"WithoutModule", makeUnseenAlertsScene<WithoutModule>}),
    AdapterName());

}  // namespace installer::test
