#include <filesystem>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux/display/WindowModuleLoader.h"
#include "ports/Alerts.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* modulePath = "Contents/Frameworks/InstallerWindow.so";

class WindowModuleLoaderTest : public testing::Test {
  protected:
    void use(const std::string& file) {
        bundle.addFolder("Contents/Frameworks");
        std::filesystem::copy_file(file, bundle.at(modulePath));
    }
    std::unique_ptr<WindowModule> load() {
        return loadWindowModule(bundle.path(), {.executablePath = executable,
                                                .bundle = platform.bundle,
                                                .files = platform.files,
                                                .log = platform.log,
                                                .openLink = [](const std::string&) {}});
    }

    ScratchFolder bundle;
    FakePlatform platform;
    std::string executable = "/Installer.app/Contents/MacOS/Installer";
};

TEST_F(WindowModuleLoaderTest, MakesWhatTheModuleMakes) {
    use(SAMPLE_WINDOW_MODULE);
    const auto module = load();
    ASSERT_NE(module, nullptr);
    // The sample's answer says that it was given this context.
    EXPECT_EQ(module->alerts().runModal({}), executable.size());
    EXPECT_THAT(platform.log.lines, ElementsAre("made by the sample module"));
}

TEST_F(WindowModuleLoaderTest, LeavesTheReasonToAModuleThatHasNoDisplay) {
    use(SAMPLE_WINDOW_MODULE);
    executable = "";
    EXPECT_EQ(load(), nullptr);
    EXPECT_THAT(platform.log.lines, ElementsAre("no display for the sample module"));
}

TEST_F(WindowModuleLoaderTest, NamesAModuleThatIsMissing) {
    EXPECT_EQ(load(), nullptr);
    EXPECT_THAT(platform.log.lines,
                ElementsAre(AllOf(HasSubstr(bundle.at(modulePath)), HasSubstr("missing"))));
}

TEST_F(WindowModuleLoaderTest, NamesAModuleThatCannotBeLoaded) {
    bundle.add(modulePath, "no shared object");
    EXPECT_EQ(load(), nullptr);
    EXPECT_THAT(platform.log.lines,
                ElementsAre(AllOf(HasSubstr("could not be loaded"), HasSubstr("Qt 6"),
                                  HasSubstr(bundle.at(modulePath)))));
}

TEST_F(WindowModuleLoaderTest, RefusesASharedObjectOfAnotherKind) {
    use(UNRELATED_SHARED_OBJECT);
    EXPECT_EQ(load(), nullptr);
    EXPECT_THAT(platform.log.lines, ElementsAre(AllOf(HasSubstr("not one of this installer"),
                                                      HasSubstr("installerMakeWindowModule"))));
}

}  // namespace
}  // namespace installer::test
