#include <cstdlib>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "linux/desktop/DesktopEntry.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(DesktopEntry, NamesTheApplicationAndHowToStartIt) {
    EXPECT_EQ(desktopEntryText({"Tone Tool", "/Applications/Tone Tool.app/Contents/MacOS/Tool",
                                "/Applications/Tone Tool.app/Contents/Resources/icon.png"}),
              "[Desktop Entry]\n"
              "Type=Application\n"
              "Name=Tone Tool\n"
              "Exec=\"/Applications/Tone Tool.app/Contents/MacOS/Tool\"\n"
              "Icon=/Applications/Tone Tool.app/Contents/Resources/icon.png\n"
              "Terminal=false\n"
              "X-Quarrytone-Installer=true\n");
}

TEST(DesktopEntry, IsKnownAsOneOfThisInstallersOwnByAWholeLine) {
    EXPECT_TRUE(isOwnDesktopEntry(desktopEntryText({"Tool", "/tool", ""}).value_or("")));
    EXPECT_FALSE(isOwnDesktopEntry(""));
    EXPECT_FALSE(isOwnDesktopEntry("[Desktop Entry]\nName=Tool\n"));
    EXPECT_FALSE(isOwnDesktopEntry("[Desktop Entry]\nName=X-Quarrytone-Installer=true\n"));
}

TEST(DesktopEntry, HasNoIconLineWithoutAnIcon) {
    EXPECT_THAT(desktopEntryText({"Tool", "/tool", ""}).value_or(""), Not(HasSubstr("Icon")));
}

TEST(DesktopEntry, QuotesTheCommandTwice) {
    const auto text = desktopEntryText({"Tool", "/100% \"a\" $b `c` \\d", ""});
    EXPECT_THAT(text.value_or(""),
                HasSubstr("Exec=\"/100%% \\\\\"a\\\\\" \\\\$b \\\\`c\\\\` \\\\\\\\d\"\n"));
}

TEST(DesktopEntry, ANameCannotAddALine) {
    const auto text = desktopEntryText({" a\\b\nExec=evil\t\x7F", "/tool", ""});
    EXPECT_THAT(text.value_or(""), HasSubstr("Name=\\sa\\\\b Exec=evil  \n"));
}

TEST(DesktopEntry, AControlCharacterAtTheStartOfANameIsASpaceThatStays) {
    const auto text = desktopEntryText({"\x01\x02tool", "/tool", ""});
    EXPECT_THAT(text.value_or(""), HasSubstr("Name=\\s tool\n"));
}

TEST(DesktopEntry, RefusesPathsThatItCannotExpress) {
    for (const char* path : {"/a\nb", "/a\tb", "/a\x1B", "/a\x7F", "/caf\xE9"})
        EXPECT_EQ(desktopEntryText({"Tool", path, ""}), std::nullopt) << path;
}

TEST(DesktopEntry, LeavesOutAnIconThatItCannotExpress) {
    EXPECT_THAT(desktopEntryText({"Tool", "/tool", "/a\nExec=evil"}).value_or(""),
                Not(HasSubstr("evil")));
}

TEST(DesktopEntryFileName, IsTheIdentifierBehindAPrefixWhereThatIsAPlainName) {
    EXPECT_EQ(desktopEntryFileName("com.example.tool_2-x"),
              "com.quarrytone.installer.com.example.tool_2-x.desktop");
}

TEST(DesktopEntryFileName, IsAlwaysAPlainNameAndDiffersForEachIdentifier) {
    std::set<std::string> names;
    const std::vector<std::string> identifiers = {"",
                                                  ".",
                                                  "..",
                                                  "../../evil",
                                                  "/etc/passwd",
                                                  "a b",
                                                  "a-b",
                                                  "-rf",
                                                  ".hidden",
                                                  "a\nb",
                                                  "日本",
                                                  "本日",
                                                  "caf\xE9",
                                                  std::string("a\0b", 3),
                                                  std::string(300, 'x'),
                                                  std::string(301, 'x')};
    for (const auto& identifier : identifiers) {
        const std::string name = desktopEntryFileName(identifier);
        EXPECT_EQ(name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                         "0123456789._-"),
                  std::string::npos)
            << name;
        EXPECT_FALSE(name.starts_with('.') || name.starts_with('-')) << name;
        EXPECT_LE(name.size(), 255u);
        EXPECT_TRUE(name.ends_with(".desktop")) << name;
        EXPECT_EQ(name, desktopEntryFileName(identifier));
        names.insert(name);
    }
    EXPECT_EQ(names.size(), identifiers.size());
}

TEST(DesktopEntryFileName, CannotBeTakenByChoosingItAsAnIdentifier) {
    for (const std::string& identifier :
         {std::string("a b"), std::string(), std::string(300, 'x')}) {
        const std::string name = desktopEntryFileName(identifier);
        EXPECT_NE(desktopEntryFileName(name.substr(0, name.rfind(".desktop"))), name);
    }
}

TEST(DesktopEntry, TheDesktopsOwnCheckerAcceptsIt) {
    if (std::system("command -v desktop-file-validate >/dev/null") != 0)
        GTEST_SKIP() << "desktop-file-validate is not installed";
    const ScratchFolder disk;
    const std::vector<DesktopEntry> entries = {
        {"Tone Tool", "/Applications/Tone Tool.app/Contents/MacOS/Tool", "/a b.png"},
        {"Größe 日本 🙂", "/Applications/Größe 日本 🙂.app/Contents/MacOS/x", "/日本.svg"},
        {" \\ % ; = # [x] \" ' ", "/a \"b\" 'c' `d` $e \\f 100% %f ;#~|&<>()*?", ""},
        {"-rf", "/a/-rf --x", ""},
    };
    for (const auto& entry : entries) {
        const auto text = desktopEntryText(entry);
        ASSERT_TRUE(text) << entry.executable;
        disk.add("entry.desktop", *text);
        const std::string command = "desktop-file-validate '" + disk.at("entry.desktop") + "'";
        EXPECT_EQ(std::system(command.c_str()), 0) << *text;
    }
}

}  // namespace
}  // namespace installer::test
