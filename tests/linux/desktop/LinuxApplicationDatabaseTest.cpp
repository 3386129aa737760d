#include <cerrno>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "linux/bundle/LinuxBundle.h"
#include "linux/desktop/LinuxApplicationDatabase.h"
#include "linux/files/LinuxSearchPaths.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

std::string named(const std::string& name) {
    return "com.quarrytone.installer." + name;
}

constexpr const char* entriesBelowHome = "home/.local/share/applications";

std::string informationOf(const std::map<std::string, std::string>& values) {
    std::string text = "<plist><dict>";
    for (const auto& [key, value] : values)
        text.append("<key>").append(key).append("</key><string>").append(value).append("</string>");
    return text + "</dict></plist>";
}

class LinuxApplicationDatabaseTest : public testing::Test {
  protected:
    std::string addPackage(const std::string& name, std::map<std::string, std::string> information,
                           const std::string& executable = "#!/bin/sh\n") const {
        const std::string package = "Applications/" + name;
        disk_.add(package + "/Contents/Info.plist", informationOf(information));
        if (information.contains("CFBundleExecutable")) {
            const std::string program = disk_.add(
                package + "/Contents/MacOS/" + information["CFBundleExecutable"], executable);
            EXPECT_EQ(::chmod(program.c_str(), 0775), 0);
        }
        return disk_.at(package);
    }
    LinuxSearchPaths pathsOn(std::optional<std::string> volume) const {
        LinuxSearchPaths::Values values;
        values.home = disk_.at("home");
        values.loginName = "someone";
        values.targetVolume = std::move(volume);
        return LinuxSearchPaths(values);
    }
    std::vector<std::string> entries() const {
        if (!std::filesystem::exists(disk_.at(entriesBelowHome))) return {};
        return disk_.names(entriesBelowHome);
    }
    std::string entry(const std::string& name) const {
        return disk_.read(std::string(entriesBelowHome) + "/" + name);
    }
    void expectLeftAlone(const std::string& path) {
        EXPECT_EQ(database_.registerApplication(path), 0);
        EXPECT_THAT(entries(), IsEmpty());
        EXPECT_THAT(log_.lines, IsEmpty());
    }

    ScratchFolder disk_;
    std::string home_ = disk_.addFolder("home");
    RecordingLog log_;
    LinuxBundles bundles_{{}, log_};
    LinuxApplicationDatabase database_{pathsOn(std::nullopt), bundles_, log_};
};

TEST_F(LinuxApplicationDatabaseTest, WritesAnEntryForAnApplication) {
    const auto path = addPackage("Tool 2.app", {{"CFBundleExecutable", "Tool"},
                                                {"CFBundleIdentifier", "com.example.tool"},
                                                {"CFBundleName", "Tool"},
                                                {"CFBundleDisplayName", "The Tool"},
                                                {"CFBundleIconFile", "AppIcon.icns"}});
    disk_.add("Applications/Tool 2.app/Contents/Resources/AppIcon.png", "png");
    EXPECT_EQ(database_.registerApplication(path), 0);
    EXPECT_THAT(entries(), ElementsAre(named("com.example.tool.desktop")));
    EXPECT_EQ(entry(named("com.example.tool.desktop")),
              "[Desktop Entry]\nType=Application\nName=The Tool\nExec=\"" + path +
                  "/Contents/MacOS/Tool\"\nIcon=" + path +
                  "/Contents/Resources/AppIcon.png\nTerminal=false\nX-Quarrytone-Installer=true\n");
}

TEST_F(LinuxApplicationDatabaseTest, TheNameFallsBackToThePackagesOwn) {
    EXPECT_EQ(database_.registerApplication(
                  addPackage("A.app", {{"CFBundleExecutable", "x"}, {"CFBundleName", "Named"}})),
              0);
    EXPECT_EQ(database_.registerApplication(
                  addPackage("B.app", {{"CFBundleExecutable", "x"}, {"CFBundleName", "  "}})),
              0);
    EXPECT_THAT(entries(), UnorderedElementsAre(named("Named.desktop"), named("B.desktop")));
    EXPECT_THAT(entry(named("Named.desktop")), HasSubstr("Name=Named\n"));
    EXPECT_THAT(entry(named("B.desktop")), HasSubstr("Name=B\n"));
}

TEST_F(LinuxApplicationDatabaseTest, RegisteringAgainReplacesTheEntry) {
    const std::map<std::string, std::string> old = {{"CFBundleExecutable", "x"},
                                                    {"CFBundleIdentifier", "com.example.tool"}};
    EXPECT_EQ(database_.registerApplication(addPackage("Old.app", old)), 0);
    EXPECT_EQ(database_.registerApplication(addPackage("New.app", old)), 0);
    EXPECT_THAT(entries(), ElementsAre(named("com.example.tool.desktop")));
    EXPECT_THAT(entry(named("com.example.tool.desktop")), HasSubstr("New.app"));
}

TEST_F(LinuxApplicationDatabaseTest, TakesNoEntryOfAnotherProgram) {
    const std::string path = addPackage(
        "Tool.app", {{"CFBundleExecutable", "x"}, {"CFBundleIdentifier", "org.gnome.Terminal"}});
    const std::string below = std::string(entriesBelowHome) + "/";
    disk_.add(below + "org.gnome.Terminal.desktop", "[Desktop Entry]\nName=Terminal\n");
    EXPECT_EQ(database_.registerApplication(path), 0);
    EXPECT_EQ(entry("org.gnome.Terminal.desktop"), "[Desktop Entry]\nName=Terminal\n");
    EXPECT_THAT(entries(), UnorderedElementsAre("org.gnome.Terminal.desktop",
                                                named("org.gnome.Terminal.desktop")));
}

TEST_F(LinuxApplicationDatabaseTest, ReplacesNoEntryThatItDidNotWrite) {
    const std::string path =
        addPackage("Tool.app", {{"CFBundleExecutable", "x"}, {"CFBundleIdentifier", "tool"}});
    const std::string file = std::string(entriesBelowHome) + "/" + named("tool.desktop");
    const std::string foreign = "[Desktop Entry]\nName=Mine\nExec=mine\n";
    disk_.add(file, foreign);
    EXPECT_EQ(database_.registerApplication(path), EEXIST);
    EXPECT_EQ(disk_.read(file), foreign);
    EXPECT_THAT(log_.lines, ElementsAre(HasSubstr(path)));
    std::filesystem::remove(disk_.at(file));
    std::filesystem::create_symlink("missing", disk_.at(file));
    EXPECT_EQ(database_.registerApplication(path), EEXIST);
    EXPECT_TRUE(std::filesystem::is_symlink(disk_.at(file)));
}

TEST_F(LinuxApplicationDatabaseTest, PackagesThatAreNoApplicationAreLeftAlone) {
    expectLeftAlone(addPackage("Texts.bundle", {{"CFBundleName", "Texts"}}));
    expectLeftAlone(addPackage("Tone.plugin", {{"CFBundleExecutable", "Tone"}}));
    expectLeftAlone(
        addPackage("Tone.app", {{"CFBundleExecutable", "Tone"}, {"CFBundlePackageType", "8BPF"}}));
    expectLeftAlone(disk_.at("missing.app"));
    expectLeftAlone(disk_.add("file.app", "no folder"));
    expectLeftAlone(disk_.addFolder("Empty.app"));
}

TEST_F(LinuxApplicationDatabaseTest, ApplicationsThatCouldNotBeStartedAreLeftAlone) {
    const auto missing = addPackage("Missing.app", {{"CFBundleExecutable", "x"}});
    std::filesystem::remove(missing + "/Contents/MacOS/x");
    expectLeftAlone(missing);
    const auto notExecutable = addPackage("Plain.app", {{"CFBundleExecutable", "x"}});
    ASSERT_EQ(::chmod((notExecutable + "/Contents/MacOS/x").c_str(), 0664), 0);
    expectLeftAlone(notExecutable);
    const auto fifo = addPackage("Fifo.app", {{"CFBundleExecutable", "x"}});
    std::filesystem::remove(fifo + "/Contents/MacOS/x");
    disk_.addFifo("Applications/Fifo.app/Contents/MacOS/x");
    expectLeftAlone(fifo);
    expectLeftAlone(addPackage("Foreign.app", {{"CFBundleExecutable", "x"}},
                               "\xCF\xFA\xED\xFE machine code of another system"));
    expectLeftAlone(addPackage("NoName.app", {{"CFBundleName", "no executable"}}));
}

TEST_F(LinuxApplicationDatabaseTest, AnExecutableOutsideThePackageIsLeftAlone) {
    expectLeftAlone(addPackage("Out.app", {{"CFBundleExecutable", "../../../../tool"}}));
    disk_.addFolder("Applications/Up.app/Contents/MacOS");
    disk_.add("Applications/Up.app/Contents/Info.plist",
              informationOf({{"CFBundleExecutable", ".."}}));
    expectLeftAlone(disk_.at("Applications/Up.app"));
}

TEST_F(LinuxApplicationDatabaseTest, AnExecutablesNameThatIsNoPlainFileNameIsLeftAlone) {
    const std::string package = addPackage("Tool.app", {{"CFBundleExecutable", "Tool"}});
    FakeBundles bundles;
    LinuxApplicationDatabase database(pathsOn(std::nullopt), bundles, log_);
    for (const std::string& name :
         {std::string(), std::string("."), std::string(".."), std::string("/bin/sh"),
          std::string("../MacOS/Tool"), std::string("Tool\0", 5)}) {
        bundles.informationByPath[package] = {{"CFBundleExecutable", name}};
        EXPECT_EQ(database.registerApplication(package), 0);
        EXPECT_THAT(entries(), IsEmpty()) << name;
    }
    bundles.informationByPath[package] = {{"CFBundleExecutable", "Tool"}};
    EXPECT_EQ(database.registerApplication(package), 0);
    EXPECT_THAT(entries(), ElementsAre(named("Tool.desktop")));
}

TEST_F(LinuxApplicationDatabaseTest, AnIconThatIsNotThereIsLeftOut) {
    for (const char* icon : {"missing", "../../secret", "folder"}) {
        const auto path = addPackage("Tool.app", {{"CFBundleExecutable", "x"},
                                                  {"CFBundleIdentifier", "tool"},
                                                  {"CFBundleIconFile", icon}});
        disk_.addFolder("Applications/Tool.app/Contents/Resources/folder.png");
        disk_.add("Applications/Tool.app/secret.png", "png");
        EXPECT_EQ(database_.registerApplication(path), 0);
        EXPECT_THAT(entry(named("tool.desktop")), Not(HasSubstr("Icon")));
    }
}

TEST_F(LinuxApplicationDatabaseTest, NamesOfEveryKindAreWritten) {
    for (const char* name : {"two  blanks", "\"double\" and 'single'", "100% $HOME `x` \\n",
                             "-rf --no-preserve-root", "日本語 🙂"}) {
        const auto path = addPackage(std::string(name) + ".app", {{"CFBundleExecutable", "x"}});
        EXPECT_EQ(database_.registerApplication(path), 0) << name;
    }
    EXPECT_EQ(entries().size(), 5u);
}

TEST_F(LinuxApplicationDatabaseTest, PathsThatAnEntryCannotExpressAreRefused) {
    for (const char* name : {"line one\nline two", "caf\xE9"}) {
        const auto path = addPackage(std::string(name) + ".app", {{"CFBundleExecutable", "x"}});
        EXPECT_EQ(database_.registerApplication(path), EINVAL);
    }
    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_EQ(log_.lines.size(), 2u);
}

TEST_F(LinuxApplicationDatabaseTest, OnATargetVolumeTheEntryLiesThereAsItsOwnSystemSeesIt) {
    LinuxApplicationDatabase database(pathsOn(disk_.path()), bundles_, log_);
    EXPECT_EQ(database.registerApplication(addPackage("Tool.app", {{"CFBundleExecutable", "x"}})),
              0);
    EXPECT_THAT(entries(), IsEmpty());
    const std::string written =
        disk_.read("Users/someone/.local/share/applications/" + named("Tool.desktop"));
    EXPECT_THAT(written, HasSubstr("/Applications/Tool.app/Contents/MacOS/x"));
    EXPECT_THAT(written, Not(HasSubstr(disk_.path())));
}

TEST_F(LinuxApplicationDatabaseTest, AFailedWriteGivesItsNumberAndIsLogged) {
    disk_.add("home/.local", "no folder");
    const auto path = addPackage("Tool.app", {{"CFBundleExecutable", "x"}});
    EXPECT_EQ(database_.registerApplication(path), ENOTDIR);
    EXPECT_THAT(log_.lines, ElementsAre(HasSubstr(path)));
}

TEST_F(LinuxApplicationDatabaseTest, RootLeavesTheEntryToTheOwnerOfTheHomeFolder) {
    if (::geteuid() != 0) GTEST_SKIP() << "needs to be root to give files away";
    ASSERT_EQ(::chown(home_.c_str(), 12345, 12345), 0);
    EXPECT_EQ(database_.registerApplication(addPackage("Tool.app", {{"CFBundleExecutable", "x"}})),
              0);
    const std::vector<std::string> paths = {".local", ".local/share", ".local/share/applications",
                                            ".local/share/applications/" + named("Tool.desktop")};
    for (const std::string& path : paths) {
        struct stat status{};
        ASSERT_EQ(::stat((home_ + "/" + path).c_str(), &status), 0) << path;
        EXPECT_EQ(status.st_uid, 12345u) << path;
    }
}

}  // namespace
}  // namespace installer::test
