#include <string>

#include <gtest/gtest.h>

#include "linux/desktop/ApplicationName.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

const std::string packaged = "/Applications/Adobe Photoshop CC 2019.app";

struct NameRow {
    std::string input;
    ProcessFacts facts;
    std::string name;
};

std::ostream& operator<<(std::ostream& out, const NameRow& row) {
    return out << row.input;
}

class ApplicationNameTest : public testing::TestWithParam<NameRow> {};

TEST_P(ApplicationNameTest, IsTheOneThatAPersonKnows) {
    FakeBundles bundles;
    bundles.informationByPath["/Applications/PS.app"] = {{"CFBundleName", "Photoshop"}};
    bundles.informationByPath["/Applications/Nameless.app"] = {{"CFBundleName", ""}};
    EXPECT_EQ(applicationName(GetParam().facts, bundles), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    Programs, ApplicationNameTest,
    testing::Values(
        NameRow{"a program", {"gimp", {"gimp", "picture.png"}, "/usr/bin/gimp-2.10"}, "gimp"},
        NameRow{"another user's", {"gimp", {"/usr/bin/gimp"}, ""}, "gimp"},
        NameRow{"a long name in the arguments",
                {"Adobe Photoshop", {"/opt/Adobe Photoshop CC 2019", "x"}, ""},
                "Adobe Photoshop CC 2019"},
        NameRow{"a long name in the program's path",
                {"Adobe Photoshop", {"ps"}, "/opt/Adobe Photoshop CC 2019"},
                "Adobe Photoshop CC 2019"},
        NameRow{"without arguments", {"cleared", {}, ""}, "cleared"},
        NameRow{"a program that renamed itself",
                {"Web Content", {"/usr/lib/firefox/firefox", "-contentproc"}, ""},
                "firefox"},
        NameRow{"a program that renamed itself, with its path",
                {"Main", {"x"}, "/usr/bin/soffice.bin"},
                "soffice.bin"},
        NameRow{"a title instead of arguments", {"sshd", {"sshd: somebody [priv]"}, ""}, "sshd"},
        NameRow{"a title with a path",
                {"nginx", {"nginx: master process /usr/sbin/nginx"}, ""},
                "nginx"},
        NameRow{"a command line in one argument",
                {"chrome", {"/opt/google/chrome --type=renderer --lang=de/at"}, ""},
                "chrome"},
        NameRow{"a colon in the path", {"tool", {"/opt/A: B/tool"}, ""}, "tool"},
        NameRow{"a login shell", {"bash", {"-bash"}, "/usr/bin/bash"}, "bash"},
        NameRow{"nothing at all", {"", {}, ""}, ""}));

INSTANTIATE_TEST_SUITE_P(
    Scripts, ApplicationNameTest,
    testing::Values(
        NameRow{"started by its interpreter",
                {"python3", {"python3", "/usr/bin/lightroom-sync"}, "/usr/bin/python3.11"},
                ""},
        NameRow{"by an interpreter with a version",
                {"python3.11", {"/usr/bin/python3.11", "tool.py"}, ""},
                ""},
        NameRow{"started as a program",
                {"a long script n", {"/usr/bin/awk", "-f", "/opt/a long script name"}, ""},
                ""},
        NameRow{"no script but a command",
                {"bash", {"bash", "-c", "sleep 5"}, "/usr/bin/bash"},
                "bash"},
        NameRow{"an interpreter alone", {"sh", {"sh"}, ""}, "sh"},
        NameRow{"an argument of another program", {"vi", {"vi", "/opt/Photoshop"}, ""}, "vi"}));

INSTANTIATE_TEST_SUITE_P(
    Packages, ApplicationNameTest,
    testing::Values(
        NameRow{"with a name of its own",
                {"run", {"run"}, "/Applications/PS.app/Contents/MacOS/run"},
                "Photoshop"},
        NameRow{"without a property list",
                {"run", {packaged + "/Contents/MacOS/run"}, ""},
                "Adobe Photoshop CC 2019"},
        NameRow{"with an empty name",
                {"run", {}, "/Applications/Nameless.app/Contents/MacOS/run"},
                "Nameless"},
        NameRow{"a script",
                {"PS", {"/bin/sh", "/Applications/PS.app/Contents/MacOS/PS"}, "/usr/bin/dash"},
                "Photoshop"},
        NameRow{"by a relative path", {"run", {"./PS.app/Contents/MacOS/run"}, ""}, "PS"},
        NameRow{"a package in a package",
                {"h", {}, packaged + "/Contents/Frameworks/Help.app/Contents/MacOS/h"},
                "Help"},
        NameRow{"a program elsewhere in a package",
                {"tool", {}, packaged + "/Contents/Resources/tool"},
                "tool"},
        NameRow{
            "another kind of package", {"run", {}, "/Library/A.plugin/Contents/MacOS/run"}, "run"},
        NameRow{"only an argument",
                {"cat", {"cat", packaged + "/Contents/MacOS/run"}, "/usr/bin/cat"},
                "cat"}));

INSTANTIATE_TEST_SUITE_P(
    WindowsPrograms, ApplicationNameTest,
    testing::Values(
        NameRow{"by their own path",
                {"Photoshop.exe",
                 {"C:\\Program Files\\Adobe\\Adobe Photoshop CC 2019\\Photoshop.exe"},
                 "/usr/lib/wine/wine64-preloader"},
                "Photoshop"},
        NameRow{"in capital letters", {"LIGHTR~1.EXE", {"LIGHTROOM.EXE"}, ""}, "LIGHTROOM"},
        NameRow{"by this system's path",
                {"wine64-preloade",
                 {"/usr/lib/wine/wine64-preloader", "/usr/lib/wine/wine64", "/home/a/Elements.exe"},
                 ""},
                "Elements"},
        NameRow{"Wine without a program", {"wine", {"wine", "--help"}, ""}, "wine"},
        NameRow{"nothing before the suffix", {".exe", {".exe"}, ""}, ".exe"}));

INSTANTIATE_TEST_SUITE_P(
    BytesThatAreNoText, ApplicationNameTest,
    testing::Values(NameRow{"in a file name", {"caf\xE9", {"/opt/caf\xE9"}, ""}, "caf\xEF\xBF\xBD"},
                    NameRow{"a character that the kernel cut",
                            {"abcdefghijklmn\xC3", {}, ""},
                            "abcdefghijklmn\xEF\xBF\xBD"},
                    NameRow{"real text", {"Größe 日", {}, ""}, "Größe 日"}));

TEST(ApplicationNameProcessStatus, ANameMayHoldAnything) {
    const auto status = parsedProcessStatus("77 (a) Z 1 (b) S 1 77 77 0 -1 4194560 115 0");
    ASSERT_TRUE(status);
    EXPECT_EQ(status->shortName, "a) Z 1 (b");
    EXPECT_FALSE(status->hasEnded);
    EXPECT_FALSE(status->isKernelThread);
}

TEST(ApplicationNameProcessStatus, TellsWhoHasEnded) {
    EXPECT_TRUE(parsedProcessStatus("7 (x) Z 1 7 7 0 -1 4228100 0")->hasEnded);
    EXPECT_TRUE(parsedProcessStatus("7 (x) X 1 7 7 0 -1 4228100 0")->hasEnded);
    EXPECT_FALSE(parsedProcessStatus("7 (x) D 1 7 7 0 -1 4228100 0")->hasEnded);
}

TEST(ApplicationNameProcessStatus, TellsTheKernelsThreads) {
    EXPECT_TRUE(parsedProcessStatus("2 (kthreadd) S 0 0 0 0 -1 2129984 0")->isKernelThread);
}

TEST(ApplicationNameProcessStatus, IsNotParsedFromAnyOtherLine) {
    for (const char* line : {"", "7", "7 (x", "7 x) S", "7 (x) S 1 2", ") S 1 7 7 0 -1 0 (",
                             "7 (x) S 1 7 7 0 -1 many 0"}) {
        EXPECT_FALSE(parsedProcessStatus(line)) << line;
    }
}

}  // namespace
}  // namespace installer::test
