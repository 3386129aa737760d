// What every way to the administrator promises.

#include <array>
#include <fstream>
#include <string>
#include <vector>

#include <sys/stat.h>

#include "linux/rights/LinuxAuthorization.h"
#include "tests/ports/Adapter.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {

/// A machine with an administrator. Its tool "/print" prints its arguments.
class AuthorizationScene {
  public:
    virtual ~AuthorizationScene() = default;
    [[nodiscard]] virtual Authorizations& authorizations() = 0;
    /// The person who is asked answers with that status, from now on.
    virtual void refuseWith(std::int32_t status) = 0;
    /// How often somebody was asked since then.
    [[nodiscard]] virtual int timesAsked() const = 0;
    /// There is no way to become the administrator.
    virtual void removeEveryWay() = 0;
};

namespace {

class HelperOfThisMachine : public AuthorizationScene {
  public:
    HelperOfThisMachine() {
        means_.sudo = folder_.add("sudo", "#!/bin/sh\nshift 2\nexec \"$@\"\n");
        EXPECT_EQ(::chmod(means_.sudo.c_str(), 0755), 0);
        AdministratorAccess access;
        access.helper.path = FAKE_HELPER;
        access.reason = "A test needs the administrator's rights.";
        access.announce = [](std::string_view) {};
        access.means = [this] { return means_; };
        authorizations_ = std::make_unique<LinuxAuthorizations>(access);
    }

    Authorizations& authorizations() override { return *authorizations_; }
    void refuseWith(std::int32_t status) override {
        const bool isCanceled = status == authorization_status::canceled;
        means_ = AdministratorMeans();
        means_.pkexec = folder_.add("pkexec", "#!/bin/sh\necho asked >> '" + folder_.at("asked") +
                                                  "'\nexit " + (isCanceled ? "126\n" : "127\n"));
        EXPECT_EQ(::chmod(means_.pkexec.c_str(), 0755), 0);
        means_.hasSystemBus = true;
    }
    int timesAsked() const override {
        std::ifstream file(folder_.at("asked"));
        int lines = 0;
        for (std::string line; std::getline(file, line);) ++lines;
        return lines;
    }
    void removeEveryWay() override { means_ = AdministratorMeans(); }

  private:
    ScratchFolder folder_;
    AdministratorMeans means_;
    std::unique_ptr<Authorizations> authorizations_;
};

class AdministratorInMemory : public AuthorizationScene {
  public:
    AdministratorInMemory() {
        authorizations_.output = [](const std::vector<std::string>& command) {
            std::string text;
            for (std::size_t index = 1; index < command.size(); ++index) text += command[index];
            return text;
        };
    }

    Authorizations& authorizations() override { return authorizations_; }
    void refuseWith(std::int32_t status) override {
        authorizations_.status = [this, status](const std::vector<std::string>&) {
            ++timesAsked_;
            return status;
        };
    }
    int timesAsked() const override { return timesAsked_; }
    void removeEveryWay() override { authorizations_.obtainable = false; }

  private:
    MemoryFileManager files_;
    std::vector<std::string> journal_;
    FakeAuthorizations authorizations_{files_, journal_};
    int timesAsked_ = 0;
};

template <class Administrator>
std::unique_ptr<AuthorizationScene> makeAuthorizationScene() {
    return std::make_unique<Administrator>();
}

std::string outputOf(PrivilegedTool& tool) {
    std::string text;
    std::array<char, 10> buffer{};
    while (const std::size_t count = tool.readOutput(buffer)) text.append(buffer.data(), count);
    return text;
}

}  // namespace

class AuthorizationContract : public Contract<AuthorizationScene> {
  protected:
    [[nodiscard]] std::unique_ptr<Authorization> obtained() {
        auto authorization = scene_->authorizations().create();
        EXPECT_TRUE(authorization->obtain(Authorization::extendRights));
        return authorization;
    }
};

TEST_P(AuthorizationContract, AToolGivesItsOutputAndThenItsEnd) {
    const auto authorization = obtained();
    const PrivilegedLaunch launch = authorization->execute("/print", {"one two ", "", "three"});
    ASSERT_EQ(launch.status, 0);
    ASSERT_NE(launch.tool, nullptr);
    EXPECT_EQ(outputOf(*launch.tool), "one two three");
    std::array<char, 10> buffer{};
    EXPECT_EQ(launch.tool->readOutput(buffer), 0U);
    EXPECT_EQ(launch.tool->status(), 0);
}

TEST_P(AuthorizationContract, TheOutputIsKeptWhenTheEndIsAwaitedFirst) {
    const auto authorization = obtained();
    const PrivilegedLaunch launch = authorization->execute("/print", {"kept output"});
    ASSERT_EQ(launch.status, 0);
    launch.tool->waitUntilEnded();
    EXPECT_EQ(outputOf(*launch.tool), "kept output");
}

TEST_P(AuthorizationContract, OneRightServesManyTools) {
    const auto authorization = obtained();
    for (const char* text : {"one", "two", "three"}) {
        const PrivilegedLaunch launch = authorization->execute("/print", {text});
        ASSERT_EQ(launch.status, 0);
        EXPECT_EQ(outputOf(*launch.tool), text);
    }
}

TEST_P(AuthorizationContract, ObtainingAsksNobody) {
    scene_->refuseWith(authorization_status::denied);
    EXPECT_NE(obtained(), nullptr);
    EXPECT_EQ(scene_->timesAsked(), 0);
}

TEST_P(AuthorizationContract, ARefusalStartsNothingAndIsRemembered) {
    for (const auto status : {authorization_status::canceled, authorization_status::denied}) {
        scene_->refuseWith(status);
        const int before = scene_->timesAsked();
        const auto authorization = obtained();
        for (int attempt = 0; attempt < 3; ++attempt) {
            const PrivilegedLaunch launch = authorization->execute("/print", {"text"});
            EXPECT_EQ(launch.status, status);
            EXPECT_EQ(launch.tool, nullptr);
        }
        EXPECT_EQ(scene_->timesAsked(), before + 1);
    }
}

TEST_P(AuthorizationContract, ANewAuthorizationAsksAnew) {
    scene_->refuseWith(authorization_status::canceled);
    for (int run = 1; run <= 2; ++run) {
        EXPECT_EQ(obtained()->execute("/print", {}).status, authorization_status::canceled);
        EXPECT_EQ(scene_->timesAsked(), run);
    }
}

TEST_P(AuthorizationContract, WithoutAnyWayNothingCanBeObtainedOrRun) {
    scene_->removeEveryWay();
    const auto authorization = scene_->authorizations().create();
    EXPECT_FALSE(authorization->obtain(Authorization::extendRights));
    const PrivilegedLaunch launch = authorization->execute("/print", {"text"});
    EXPECT_EQ(launch.status, authorization_status::denied);
    EXPECT_EQ(launch.tool, nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Authorization, AuthorizationContract,
    testing::Values(
        Adapter<AuthorizationScene>{"Linux", makeAuthorizationScene<HelperOfThisMachine>},
        Adapter<AuthorizationScene>{"Fake", makeAuthorizationScene<AdministratorInMemory>}),
    AdapterName());

}  // namespace installer::test
