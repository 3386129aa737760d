#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/HostModel.h"
#include "steps/hosts/HostsController.h"
#include "tests/app/Wizard.h"

namespace installer::test {
namespace {

using testing::Contains;
using testing::IsEmpty;

using Names = std::set<std::string>;

/// The wizard with a window that shows every property: a value is read when the window is made,
/// and again only when the window is told.
class SetupControllerBindingsTest : public WizardTest {
  protected:
    void open() {
        make();
        for (const auto& property : wizard->boundProperties()) {
            shown_[property.name] = wizard->valueForProperty(property.name);
        }
        told_ = wizard->observeProperties([this](std::string_view property) {
            names_.emplace(property);
            const auto shown = shown_.find(std::string(property));
            if (shown != shown_.end()) shown->second = wizard->valueForProperty(property);
        });
        announced_ = wizard->observe([this](Observable::Moment, std::string_view property) {
            announcements_.emplace(property);
        });
        wizard->awakeFromNib(fake.interfaces.load("MainWindow", *wizard));
        for (std::int32_t step = 0; step < 5; ++step) {
            if (const auto model = wizard->getModelForStep(step)) {
                models_[step] = model->observe([this](Observable::Moment, std::string_view name) {
                    announcements_.emplace(name);
                });
            }
        }
    }

    /// The properties of which the window shows another value than the controller has. A list is
    /// left out: the window reads it each time that it is shown.
    Lines outdated() const {
        Lines names;
        for (const auto& [name, value] : shown_) {
            if (name != "foundHosts" && wizard->valueForProperty(name) != value) {
                names.push_back(name);
            }
        }
        return names;
    }

    HostsController& hosts() {
        return dynamic_cast<HostsController&>(*wizard->getControllerForStep(1));
    }

    /// Goes through what a user can do in the wizard, with a look at the window after each action.
    void walk() {
        const auto act = [this](const char* what, const std::function<void()>& action) {
            action();
            EXPECT_THAT(outdated(), IsEmpty()) << "after: " << what;
        };
        const auto press = [&](const char* name) {
            act(name, [&] { wizard->performAction(name, nullptr); });
        };
        press("nextView");
        press("previousView");
        press("nextView");
        press("customInstallMenu");
        press("subViewButtonPress");
        fake.folderPanel.answer = "/Chosen";
        act("browse", [&] { hosts().performAction("browseButtonPressed", nullptr); });
        press("previousView");
        act("tick", [&] { wizard->setRowChecked("foundHosts", 0, true); });
        act("editors",
            [&] { wizard->setValueForProperty("shouldConfigurePrismorExternalEditors", true); });
        act("editors allowed", [&] { wizard->setCanConfigurePrismorExternalEditors(true); });
        act("help", [&] { wizard->setValueForProperty("launchHelpURL", false); });
        press("nextView");
        if (!fake.workspace.running.empty()) {
            const std::string host = fake.workspace.running.front();
            act("the host ends", [&] { fake.workspace.end(host); });
            press("nextView");
        }
        EXPECT_THAT(highlighted(), testing::ElementsAre(4));
        press("previousView");
    }

    std::map<std::string, PropertyValue> shown_;
    Names names_;
    Names announcements_;

  private:
    Subscription told_;
    Subscription announced_;
    std::map<std::int32_t, Subscription> models_;
};

TEST_F(SetupControllerBindingsTest, TheWindowNeverShowsAnOutdatedValue) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.workspace.running = {"Photoshop CS6"};
    fake.memory.addFile("/Installer.app/Contents/Resources/files/PHOTOSHOP/run.jsx");
    open();
    walk();
}

TEST_F(SetupControllerBindingsTest, TheWindowNeverShowsAnOutdatedFailure) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.memory.addOther("/Installer.app/Contents/Resources/files/HD/Applications/Tool.app/pipe");
    open();
    walk();
    EXPECT_TRUE(flagOf("hasFailedItems"));
}

TEST_F(SetupControllerBindingsTest, TheWindowNeverShowsOutdatedRights) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.bundle.tables["Localizable"]["rights_refused"] = "Refused";
    fake.memory.addFile(
        "/Installer.app/Contents/Resources/files/HD/Library/Application Support/Acme/Filters 2/a");
    fake.authorizations.status = [](const auto&) { return authorization_status::denied; };
    open();
    walk();
    EXPECT_EQ(textOf("failureReason"), "Refused");
}

TEST_F(SetupControllerBindingsTest, EveryPropertyThatMayChangeIsAnnouncedInAWalk) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.workspace.running = {"Photoshop CS6"};
    open();
    walk();
    for (const auto& property : wizard->boundProperties()) {
        if (property.isConstant) continue;
        EXPECT_THAT(names_, Contains(property.name));
    }
}

TEST_F(SetupControllerBindingsTest, NoConstantIsEverAnnounced) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.workspace.running = {"Photoshop CS6"};
    open();
    walk();
    for (const auto& property : wizard->boundProperties()) {
        if (!property.isConstant) continue;
        EXPECT_THAT(names_, testing::Not(Contains(property.name)));
    }
}

TEST_F(SetupControllerBindingsTest, EveryNameThatIsAnnouncedIsBound) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.workspace.running = {"Photoshop CS6"};
    open();
    walk();
    Names unbound;
    for (const std::string& name : announcements_) {
        if (!shown_.contains(name)) unbound.insert(name);
    }
    // The installation announces it together with the buttons, but it is a question to the step
    // and no property.
    EXPECT_THAT(unbound, testing::ElementsAre("canProceed"));
}

/// The names that the controls of a sample description bind to.
Names namesIn(const std::string& description) {
    std::ifstream file(std::string(SAMPLE_RESOURCES) + "/" + description);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::regex binding("name=\"[a-zA-Z]+Binding\"[^>]*>\\s*<string>([^<]*)</string>");
    Names names;
    for (std::sregex_iterator match(text.begin(), text.end(), binding), end; match != end;
         ++match) {
        names.insert((*match)[1]);
    }
    return names;
}

TEST_F(SetupControllerBindingsTest, TheSampleWindowNamesPropertiesThatExist) {
    start();
    const Names names = namesIn("MainWindow.ui");
    EXPECT_THAT(names, Contains("mainLabelText"));
    for (const std::string& name : names) {
        EXPECT_NE(wizard->valueForProperty(name), PropertyValue()) << name;
    }
}

TEST_F(SetupControllerBindingsTest, TheSampleCustomInstallNamesPropertiesThatExist) {
    start();
    const Names names = namesIn("CustomInstall.ui");
    EXPECT_THAT(names, Contains("customPath"));
    for (const std::string& name : names) {
        EXPECT_NE(hosts().valueForProperty(name), PropertyValue()) << name;
    }
}

}  // namespace
}  // namespace installer::test
