#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/SetupController.h"
#include "hosts/HostModel.h"
#include "tests/support/FakeWindow.h"
#include "wizard/StepController.h"
#include "wizard/StepModel.h"

namespace installer::test {

using Lines = std::vector<std::string>;

/// A step that answers as it is told and notes what it is told in `events`: "leave NUMBER
/// DIRECTION" and "enter NUMBER DIRECTION".
class ScriptedStep : public StepController {
  public:
    ScriptedStep(std::int32_t number, Lines& events) : number_(number), events_(events) {}

    bool forward = true;
    bool backward = true;
    bool mayProceed = true;
    std::function<void(MainController&)> whileEntered;
    std::shared_ptr<StepModel> model;
    std::shared_ptr<View> view;
    MainController* mainController = nullptr;

    bool enableForward() const override { return forward; }
    bool enableBackward() const override { return backward; }
    bool canProceed(std::int32_t /*direction*/) override { return mayProceed; }
    void didProceed(std::int32_t direction) override { note("leave", direction); }
    void didEnterWithModel(std::shared_ptr<StepModel> newModel, std::shared_ptr<View> newView,
                           MainController* main, std::int32_t direction) override {
        note("enter", direction);
        model = std::move(newModel);
        view = std::move(newView);
        mainController = main;
        if (whileEntered) whileEntered(*main);
    }

  protected:
    void note(const std::string& what, std::int32_t direction) {
        events_.push_back(what + " " + std::to_string(number_) + " " + std::to_string(direction));
    }

  private:
    std::int32_t number_;
    Lines& events_;
};

/// A model with texts that a test sets.
class ScriptedModel : public StepModel {
  public:
    std::optional<std::string> mainLabel = "Heading";
    PlainOrStyledText informative = "Explanation";

    std::optional<std::string> mainLabelText() const override { return mainLabel; }
    std::string stepIndicatorLabelText() const override { return "Row"; }
    PlainOrStyledText informativeText() const override { return informative; }
};

/// The whole wizard of a product "Filters 2" by Acme, over fakes. The user agrees to the licence.
class WizardTest : public testing::Test {
  protected:
    WizardTest() {
        fake.bundle.tables["Localizable"] = {
            {"continue", "Continue"},        {"quit", "Quit"},
            {"go_back", "Go Back"},          {"finish", "Finish"},
            {"license_blue_dot", "Licence"}, {"host_selection", "Hosts"},
            {"running_blue_dot", "Running"}, {"copy_files_blue_dot", "Copy"},
            {"register_blue_dot", "Done"},   {"license_instructions", "Read this"},
            {"select_host", "Select"},       {"register_title", "Finished"},
            {"install_failed", "Ask %@"},    {"help_url_format", "https://acme.example/%@"}};
        fake.bundle.resources = {{"DotBlue.tiff", "/blue"}, {"DotGray.tiff", "/gray"}};
        fake.memory.addFolder("/Library/Application Support");
    }

    void addPhotoshop(const std::string& name) {
        const std::string folder = "/Applications/" + name;
        fake.memory.addFolder(folder + "/Photoshop.app");
        fake.memory.addFile("/Users/tester/Library/Preferences/" + name + " Paths",
                            folder + std::string(1, '\0'));
    }

    void make() { wizard = std::make_unique<SetupController>(fake.windowPlatform); }

    /// Makes the controller, loads its window and starts the wizard.
    void start() {
        make();
        auto interface = fake.interfaces.load("MainWindow", *wizard);
        wizard->awakeFromNib(std::move(interface));
    }

    /// Writes what the controller announces into `events`: "will NAME" and "did NAME".
    void recordAnnouncements() {
        announcements_ =
            wizard->observe([this](Observable::Moment moment, std::string_view property) {
                const bool isBefore = moment == Observable::Moment::willChange;
                events.push_back((isBefore ? "will " : "did ") + std::string(property));
            });
    }

    /// Writes what the window is told into `refreshed`.
    void recordRefreshes() {
        refreshes_ = wizard->observeProperties(
            [this](std::string_view property) { refreshed.emplace_back(property); });
    }

    /// Puts a step of the test's own in place of the wizard's, without view and model.
    template <class Step = ScriptedStep>
    std::shared_ptr<Step> script(std::int32_t number) {
        auto step = std::make_shared<Step>(number, events);
        wizard->addStep(nullptr, step, nullptr, number);
        return step;
    }

    /// Puts steps of the test's own in place of all but the first.
    void scriptSteps() {
        for (const std::int32_t number : {1, 2, 3, 4}) script(number);
    }

    void goTo(std::int32_t number) {
        for (std::int32_t step = 0; step < number; ++step) wizard->nextView(nullptr);
    }

    FakeInterfaceParts& window() { return *fake.interfaces.loaded["MainWindow"].back(); }
    FakeView& view(const std::string& name) { return *window().views[name]; }
    int timesClosed() { return window().windows["mainWindow"]->closed; }

    /// The visible ones of the steps' views.
    Lines visibleViews() {
        Lines names;
        for (const char* name :
             {"licenseView", "hostsView", "rtfView", "installFilesView", "registerView"}) {
            if (!view(name).hidden) names.emplace_back(name);
        }
        return names;
    }

    /// The row of a step that was registered when the wizard started.
    FakeInterfaceParts& row(std::size_t step) {
        // In the order of registration: 0, 3, 1, 2, 4.
        static constexpr std::size_t places[] = {0, 2, 3, 1, 4};
        return *fake.interfaces.loaded["Step Indicator"].at(places[step]);
    }

    /// The numbers of the steps whose rows have the blue dot.
    std::vector<std::size_t> highlighted() {
        std::vector<std::size_t> steps;
        for (std::size_t step = 0; step < 5; ++step) {
            if (row(step).imageViews["indicator"]->image == Image{"/blue"}) steps.push_back(step);
        }
        return steps;
    }

    template <class Value>
    Value valueOf(std::string_view property) {
        const PropertyValue value = wizard->valueForProperty(property);
        const auto* typed = std::get_if<Value>(&value);
        EXPECT_NE(typed, nullptr) << property << " has another type, or no value";
        return typed == nullptr ? Value() : *typed;
    }
    std::string textOf(std::string_view property) { return valueOf<std::string>(property); }
    bool flagOf(std::string_view property) { return valueOf<bool>(property); }

    FakeWindowPlatform fake;
    Lines events;
    Lines refreshed;
    std::unique_ptr<SetupController> wizard;

  private:
    Subscription announcements_;
    Subscription refreshes_;
};

}  // namespace installer::test
