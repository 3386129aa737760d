#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "steps/hosts/HostsController.h"
#include "steps/hosts/HostsModel.h"
#include "tests/support/FakeMainController.h"
#include "tests/support/FakeWindow.h"

namespace installer::test {

/// The host-selection step with a main controller that has no hosts yet and offers no custom
/// install. `events` takes what the main controller is told; `recordAnnouncements` adds what is
/// announced on it, and on the step itself as "own will NAME" and "own did NAME".
class HostsControllerScene : public testing::Test {
  protected:
    HostsControllerScene() {
        main.customInstallIsRecommended = false;
        parent->addSubview(list);
    }

    HostModel addPhotoshop(const std::string& name = "Adobe Photoshop CC 2019") {
        main.found.emplace_back(PhotoshopHostModel::initWithHostName(fake.platform, name));
        return main.found.back();
    }

    void remember(const std::string& customPath) {
        fake.preferences.values[{domain, "customPath"}] = customPath;
    }
    [[nodiscard]] PreferenceValue remembered() {
        return fake.preferences.values[{domain, "customPath"}];
    }

    void recordAnnouncements() {
        main.recordAnnouncements();
        own_ = controller.observe([this](Observable::Moment moment, std::string_view property) {
            events.push_back((moment == Observable::Moment::willChange ? "own will " : "own did ") +
                             std::string(property));
        });
    }

    void enter(std::int32_t direction = 1) {
        controller.didEnterWithModel(model, list, &main, direction);
    }
    /// Enters with one host, and goes on to the custom install.
    HostModel enterCustomScreen() {
        HostModel photoshop = addPhotoshop();
        enter();
        controller.buttonPressed(this);
        return photoshop;
    }

    /// The view of the custom install; null while it was not made.
    std::shared_ptr<FakeView> customView() {
        const auto& loads = fake.interfaces.loaded["CustomInstall"];
        return loads.empty() ? nullptr : loads.front()->views["customInstallView"];
    }
    std::size_t timesLoaded() { return fake.interfaces.loaded["CustomInstall"].size(); }

    void expectHostList() {
        EXPECT_EQ(controller.currentView(), list);
        EXPECT_FALSE(list->hidden);
        EXPECT_TRUE(!customView() || customView()->hidden);
    }
    void expectCustomScreen() {
        ASSERT_NE(customView(), nullptr);
        EXPECT_EQ(controller.currentView(), customView());
        EXPECT_FALSE(customView()->hidden);
        EXPECT_TRUE(list->hidden);
    }

    /// The custom folder's host among the found ones.
    UnknownHostModel& customHost() {
        for (const HostModel& host : main.found) {
            if (auto* custom = host.as<UnknownHostModel>()) return *custom;
        }
        ADD_FAILURE() << "there is no custom folder's host";
        static UnknownHostModel none(fake.platform, "");
        return none;
    }

    static constexpr const char* domain = "com.quarrytone.installer";

    FakeWindowPlatform fake;
    std::vector<std::string> events;
    FakeMainController main{events};
    std::shared_ptr<FakeView> parent = std::make_shared<FakeView>();
    std::shared_ptr<FakeView> list = std::make_shared<FakeView>();
    std::shared_ptr<HostsModel> model = std::make_shared<HostsModel>(fake.platform);
    HostsController controller{fake.windowPlatform};

  private:
    Subscription own_;
};

inline bool isSelected(const HostModel& host) {
    return host.booleanNamed("hostIsSelected") == true;
}

}  // namespace installer::test
