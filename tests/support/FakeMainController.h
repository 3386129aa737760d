#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "hosts/HostModel.h"
#include "wizard/MainController.h"

namespace installer::test {

/// A main controller made of values. What it is told stands in `events`, which tests share with
/// other fakes: "next view", "custom host added", "custom host removed"; `recordAnnouncements`
/// adds "will NAME" and "did NAME".
class FakeMainController : public MainController {
  public:
    explicit FakeMainController(std::vector<std::string>& events) : events_(events) {}

    std::vector<HostModel> found;
    /// What `selectedHosts` answers; unless it is set, the found hosts that are selected.
    std::optional<std::vector<HostModel>> selected;
    bool configureEditors = false;
    bool success = false;
    bool customInstallAllowed = false;
    bool customInstallChosen = false;
    bool customInstallIsRecommended = true;
    const void* nextViewSender = nullptr;
    std::function<void()> onNextView;

    void recordAnnouncements() {
        announcements_ = observe([this](Moment moment, std::string_view property) {
            events_.push_back((moment == Moment::willChange ? "will " : "did ") +
                              std::string(property));
        });
    }

    std::vector<HostModel> foundHosts() const override { return found; }
    std::vector<HostModel> selectedHosts() const override {
        if (selected) return *selected;
        std::vector<HostModel> hosts;
        for (const HostModel& host : found) {
            if (host.booleanNamed("hostIsSelected") == true) hosts.push_back(host);
        }
        return hosts;
    }
    bool shouldConfigurePrismorExternalEditors() const override { return configureEditors; }
    bool successfulInstall() const override { return success; }
    bool isCustomInstallAllowed() const override { return customInstallAllowed; }
    void setIsCustomInstallAllowed(bool allowed) override { customInstallAllowed = allowed; }
    bool isCustomInstallChosen() const override { return customInstallChosen; }
    void setIsCustomInstallChosen(bool chosen) override { customInstallChosen = chosen; }
    bool customInstallRecommended() const override { return customInstallIsRecommended; }
    void customHostAdded(const HostModel& host) override {
        events_.emplace_back("custom host added");
        found.push_back(host);
    }
    void customHostRemoved(const HostModel& host) override {
        events_.emplace_back("custom host removed");
        std::erase(found, host);
    }
    void nextView(const void* sender) override {
        events_.emplace_back("next view");
        nextViewSender = sender;
        if (onNextView) onNextView();
    }

  private:
    std::vector<std::string>& events_;
    Subscription announcements_;
};

}  // namespace installer::test
