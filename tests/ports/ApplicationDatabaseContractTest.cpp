// What every list of the desktop's applications promises.

#include <string>

#include <sys/stat.h>

#include "linux/bundle/LinuxBundle.h"
#include "linux/desktop/LinuxApplicationDatabase.h"
#include "linux/files/LinuxSearchPaths.h"
#include "tests/ports/Adapter.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {

/// A desktop that knows no application yet.
class ApplicationDatabaseScene {
  public:
    virtual ~ApplicationDatabaseScene() = default;
    [[nodiscard]] virtual ApplicationDatabase& applications() = 0;
    /// The path of an application that can be started, and of something else.
    [[nodiscard]] virtual std::string makeApplication(const std::string& name) = 0;
    [[nodiscard]] virtual std::string makeOtherItem(const std::string& name) = 0;
    [[nodiscard]] virtual std::size_t countKnown() const = 0;
    /// From now on nothing can be made known.
    virtual void fail() = 0;
};

namespace {

class MenuOfThisDesktop : public ApplicationDatabaseScene {
  public:
    ApplicationDatabase& applications() override { return applications_; }
    std::string makeApplication(const std::string& name) override {
        const std::string program = folder_.add(name + ".app/Contents/MacOS/run", "#!/bin/sh\n");
        EXPECT_EQ(::chmod(program.c_str(), 0755), 0);
        folder_.add(
            name + ".app/Contents/Info.plist",
            "<plist><dict><key>CFBundleExecutable</key><string>run</string></dict></plist>");
        return folder_.at(name + ".app");
    }
    std::string makeOtherItem(const std::string& name) override {
        return folder_.addFolder(name + ".plugin");
    }
    std::size_t countKnown() const override {
        return folder_.holds(entries_) ? folder_.names(entries_).size() : 0;
    }
    void fail() override { folder_.add(entries_, "a file where the folder would be"); }

  private:
    static LinuxSearchPaths::Values valuesWithHome(const std::string& home) {
        LinuxSearchPaths::Values values;
        values.home = home;
        values.loginName = "tester";
        return values;
    }

    ScratchFolder folder_;
    std::string entries_ = "home/.local/share/applications";
    RecordingLog log_;
    LinuxBundles bundles_{{}, log_};
    LinuxSearchPaths searchPaths_{valuesWithHome(folder_.at("home"))};
    LinuxApplicationDatabase applications_{searchPaths_, bundles_, log_};
};

class MenuInMemory : public ApplicationDatabaseScene {
  public:
    ApplicationDatabase& applications() override { return applications_; }
    std::string makeApplication(const std::string& name) override {
        return "/Applications/" + name + ".app";
    }
    std::string makeOtherItem(const std::string& name) override {
        return *applications_.otherItems.insert("/Library/" + name + ".plugin").first;
    }
    std::size_t countKnown() const override { return applications_.known.size(); }
    void fail() override { applications_.status = -10811; }

  private:
    std::vector<std::string> journal_;
    RecordingApplicationDatabase applications_{journal_};
};

template <class Menu>
std::unique_ptr<ApplicationDatabaseScene> makeApplicationDatabaseScene() {
    return std::make_unique<Menu>();
}

}  // namespace

class ApplicationDatabaseContract : public Contract<ApplicationDatabaseScene> {};

TEST_P(ApplicationDatabaseContract, EachApplicationIsKnownOnceHoweverOftenItIsRegistered) {
    const std::string one = scene_->makeApplication("One");
    const std::string two = scene_->makeApplication("Two");
    EXPECT_EQ(scene_->applications().registerApplication(one), 0);
    EXPECT_EQ(scene_->countKnown(), 1U);
    EXPECT_EQ(scene_->applications().registerApplication(one), 0);
    EXPECT_EQ(scene_->countKnown(), 1U);
    EXPECT_EQ(scene_->applications().registerApplication(two), 0);
    EXPECT_EQ(scene_->countKnown(), 2U);
}

TEST_P(ApplicationDatabaseContract, WhatIsNoApplicationIsLeftAloneWithSuccess) {
    const std::string item = scene_->makeOtherItem("Filters");
    EXPECT_EQ(scene_->applications().registerApplication(item), 0);
    EXPECT_EQ(scene_->countKnown(), 0U);
}

TEST_P(ApplicationDatabaseContract, AFailureHasAStatusOfItsOwn) {
    const std::string path = scene_->makeApplication("One");
    scene_->fail();
    EXPECT_NE(scene_->applications().registerApplication(path), 0);
}

INSTANTIATE_TEST_SUITE_P(
    ApplicationDatabase, ApplicationDatabaseContract,
    testing::Values(
        Adapter<ApplicationDatabaseScene>{"Linux", makeApplicationDatabaseScene<MenuOfThisDesktop>},
        Adapter<ApplicationDatabaseScene>{"Fake", makeApplicationDatabaseScene<MenuInMemory>}),
    AdapterName());

}  // namespace installer::test
