#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "linux/bundle/LinuxBundle.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* bundleName = "Größe & \"Co\" 日本 Installer.app";

class LinuxBundleTest : public testing::Test {
  protected:
    std::string resource(const std::string& below) const {
        return std::string(bundleName) + "/Contents/Resources/" + below;
    }
    std::string addResource(const std::string& below, std::string_view contents) const {
        return disk_.add(resource(below), contents);
    }
    void addTexts(const std::string& language, const std::string& text) const {
        addResource(language + ".lproj/Localizable.strings", "\"greeting\" = \"" + text + "\";");
    }
    LinuxBundle bundleFor(const std::vector<std::string>& languages) {
        return {disk_.at(bundleName), languages, log_};
    }
    std::optional<std::string> greetingFor(const std::vector<std::string>& languages) {
        return bundleFor(languages).localizedString("greeting", "Localizable");
    }
    LinuxBundle bundleWithInformation(std::string_view propertyList) {
        disk_.add(std::string(bundleName) + "/Contents/Info.plist", propertyList);
        return bundleFor({});
    }

    ScratchFolder disk_;
    RecordingLog log_;
};

TEST_F(LinuxBundleTest, KnowsItsFolders) {
    const auto bundle = bundleFor({});
    EXPECT_EQ(bundle.resourcesFolder(), disk_.at(bundleName) + "/Contents/Resources");
    EXPECT_EQ(bundle.sharedSupportFolder(), disk_.at(bundleName) + "/Contents/SharedSupport");
}

TEST_F(LinuxBundleTest, AProgramOutsideABundleHasNone) {
    EXPECT_EQ(LinuxBundle::runningBundleFolder(), std::nullopt);
}

TEST_F(LinuxBundleTest, SpeaksTheFirstPreferredLanguageThatItHas) {
    addTexts("de", "Hallo");
    addTexts("en", "Hello");
    EXPECT_EQ(greetingFor({"fr", "de_AT", "en"}), "Hallo");
    EXPECT_EQ(greetingFor({"en", "de"}), "Hello");
    EXPECT_EQ(greetingFor({"fr"}), "Hello");
    EXPECT_EQ(greetingFor({}), "Hello");
}

TEST_F(LinuxBundleTest, WithoutEnglishSpeaksTheFirstLanguageByName) {
    addTexts("it", "Ciao");
    addTexts("fr", "Bonjour");
    EXPECT_EQ(greetingFor({"ja"}), "Bonjour");
}

TEST_F(LinuxBundleTest, SaysWhichLanguageItSpeaks) {
    EXPECT_EQ(bundleFor({"de"}).localization(), "");
    addTexts("de", "Hallo");
    addTexts("en", "Hello");
    EXPECT_EQ(bundleFor({"fr", "de_AT", "en"}).localization(), "de");
    EXPECT_EQ(bundleFor({"ja"}).localization(), "en");
    EXPECT_EQ(bundleFor({}).localization(), "en");
    // A whole file of another language may stand in; that is not the language.
    addResource("en.lproj/license.txt", "license");
    EXPECT_EQ(bundleFor({"de"}).localization(), "de");
}

TEST_F(LinuxBundleTest, ALanguageThatIsAFileIsNone) {
    addTexts("en", "Hello");
    addResource("de.lproj", "no folder");
    EXPECT_EQ(greetingFor({"de"}), "Hello");
}

TEST_F(LinuxBundleTest, ALanguageNameCannotLeadOutOfTheBundle) {
    addTexts("en", "Hello");
    disk_.add("elsewhere.lproj/Localizable.strings", "greeting = evil;");
    EXPECT_EQ(greetingFor({"../../../elsewhere"}), "Hello");
}

TEST_F(LinuxBundleTest, EnglishReplacesAWholeMissingTable) {
    addTexts("de", "Hallo");
    addResource("en.lproj/installer.strings", "company_name = Quarrytone;");
    const auto bundle = bundleFor({"de"});
    EXPECT_EQ(bundle.localizedString("greeting", "Localizable"), "Hallo");
    EXPECT_EQ(bundle.localizedString("company_name", "installer"), "Quarrytone");
}

TEST_F(LinuxBundleTest, EnglishNeverReplacesASingleMissingText) {
    addTexts("de", "Hallo");
    addResource("en.lproj/Localizable.strings", "farewell = Bye;");
    EXPECT_EQ(bundleFor({"de"}).localizedString("farewell", "Localizable"), std::nullopt);
}

TEST_F(LinuxBundleTest, ATableThatAllLanguagesShareIsUsedLast) {
    addTexts("de", "Hallo");
    addResource("installer.strings", "company_name = Shared;");
    EXPECT_EQ(bundleFor({"de"}).localizedString("company_name", "installer"), "Shared");
}

TEST_F(LinuxBundleTest, AMissingTableHasNoTextsAndIsNoProblem) {
    EXPECT_EQ(bundleFor({"de"}).localizedString("greeting", "Localizable"), std::nullopt);
    EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(LinuxBundleTest, ATableIsReadOnce) {
    addResource("en.lproj/Localizable.strings", "greeting = Hello; = broken;");
    const auto bundle = bundleFor({});
    EXPECT_EQ(bundle.localizedString("greeting", "Localizable"), "Hello");
    addTexts("en", "Changed");
    EXPECT_EQ(bundle.localizedString("greeting", "Localizable"), "Hello");
    EXPECT_EQ(log_.lines.size(), 1u);
}

TEST_F(LinuxBundleTest, ASyntaxErrorIsLoggedWithFileAndLineAndTheRestIsRead) {
    const auto path = addResource("en.lproj/Localizable.strings",
                                  "a = 1;\n\"broken = ;\n\"greeting\" = \"Hello\";\n");
    EXPECT_EQ(greetingFor({}), "Hello");
    EXPECT_THAT(log_.lines, ElementsAre(StartsWith(path + ":2: ")));
}

TEST_F(LinuxBundleTest, ATableThatCannotBeReadIsLoggedAndEnglishStandsIn) {
    addTexts("en", "Hello");
    disk_.addFifo(resource("de.lproj/Localizable.strings"));
    disk_.addFolder(resource("fr.lproj/Localizable.strings"));
    disk_.addSparse(resource("it.lproj/Localizable.strings"), 1ull << 40);
    for (const char* language : {"de", "fr", "it"}) {
        log_.lines.clear();
        EXPECT_EQ(greetingFor({language}), "Hello");
        EXPECT_THAT(log_.lines,
                    ElementsAre(HasSubstr(std::string(language) + ".lproj/Localizable.strings")));
    }
}

TEST_F(LinuxBundleTest, ATableOfBinaryGarbageIsLoggedWithinBounds) {
    std::string garbage;
    for (int index = 0; index < 100'000; ++index) garbage += static_cast<char>(index * 131 % 251);
    addResource("en.lproj/Localizable.strings", garbage);
    EXPECT_EQ(greetingFor({}), std::nullopt);
    EXPECT_FALSE(log_.lines.empty());
    EXPECT_LE(log_.lines.size(), 20u);
}

TEST_F(LinuxBundleTest, TheLanguagesFileWinsThenTheEnglishThenTheSharedOne) {
    addTexts("de", "Hallo");
    const auto shared = addResource("license.txt", "shared");
    EXPECT_EQ(bundleFor({"de"}).resourcePath("license", "txt"), shared);
    const auto english = addResource("en.lproj/license.txt", "English");
    EXPECT_EQ(bundleFor({"de"}).resourcePath("license", "txt"), english);
    const auto german = addResource("de.lproj/license.txt", "deutsch");
    EXPECT_EQ(bundleFor({"de"}).resourcePath("license", "txt"), german);
    EXPECT_EQ(bundleFor({"en"}).resourcePath("license", "txt"), english);
}

TEST_F(LinuxBundleTest, AResourceThatIsNowhereIsNone) {
    addResource("license.txt", "shared");
    const auto bundle = bundleFor({"de"});
    EXPECT_EQ(bundle.resourcePath("license", "rtf"), std::nullopt);
    EXPECT_EQ(bundle.resourcePath(std::string("license.txt\0x", 13), ""), std::nullopt);
}

TEST_F(LinuxBundleTest, AResourceNeedsNoTypeAndMayBeAFolder) {
    const auto files = disk_.addFolder(resource("files"));
    EXPECT_EQ(bundleFor({}).resourcePath("files", ""), files);
}

TEST_F(LinuxBundleTest, GivesTextsAndNumbersOfItsPropertyListAsText) {
    const auto bundle = bundleWithInformation(
        "<plist><dict><key>CFBundleVersion</key><string>1.2.3</string><key>n</key>"
        "<integer>2</integer><key>m</key><integer>-5</integer><key>r</key><real>1.5</real>"
        "<key>flag</key><true/><key>list</key><array/></dict></plist>");
    EXPECT_EQ(bundle.informationValue("CFBundleVersion"), "1.2.3");
    EXPECT_EQ(bundle.informationValue("n"), "2");
    EXPECT_EQ(bundle.informationValue("m"), "-5");
    EXPECT_EQ(bundle.informationValue("r"), "1.5");
    EXPECT_EQ(bundle.informationValue("flag"), std::nullopt);
    EXPECT_EQ(bundle.informationValue("list"), std::nullopt);
    EXPECT_EQ(bundle.informationValue("missing"), std::nullopt);
    EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(LinuxBundleTest, ABrokenPropertyListIsLoggedOnceAndHasNoValues) {
    for (const std::string_view broken :
         {"<plist><dict><key>CFBundleVersion</key><str", "bplist00\xFF\xFF\xFF", "garbage", ""}) {
        log_.lines.clear();
        const auto bundle = bundleWithInformation(broken);
        EXPECT_EQ(bundle.informationValue("CFBundleVersion"), std::nullopt);
        EXPECT_EQ(bundle.informationValue("CFBundleName"), std::nullopt);
        EXPECT_THAT(log_.lines,
                    ElementsAre(HasSubstr(disk_.at(bundleName) + "/Contents/Info.plist")));
    }
}

TEST_F(LinuxBundleTest, APropertyListThatIsNoFileIsLoggedAndHasNoValues) {
    const std::string information = std::string(bundleName) + "/Contents/Info.plist";
    disk_.addFifo(information);
    EXPECT_EQ(bundleFor({}).informationValue("CFBundleVersion"), std::nullopt);
    std::filesystem::remove(disk_.at(information));
    disk_.addSparse(information, 1ull << 40);
    EXPECT_EQ(bundleFor({}).informationValue("CFBundleVersion"), std::nullopt);
    EXPECT_EQ(log_.lines.size(), 2u);
}

TEST_F(LinuxBundleTest, IsNeverWrittenTo) {
    addTexts("en", "Hello");
    const auto bundle = bundleWithInformation("<plist><dict/></plist>");
    const auto count = [&] {
        return std::distance(std::filesystem::recursive_directory_iterator(disk_.path()),
                             std::filesystem::recursive_directory_iterator());
    };
    const auto before = count();
    static_cast<void>(bundle.localizedString("greeting", "Localizable"));
    static_cast<void>(bundle.informationValue("CFBundleName"));
    static_cast<void>(bundle.resourcePath("license", "txt"));
    EXPECT_EQ(count(), before);
}

class LinuxBundlesTest : public LinuxBundleTest {
  protected:
    LinuxBundles bundles_{{}, log_};
};

TEST_F(LinuxBundlesTest, OpensAFolderWithAPropertyListWhateverItsName) {
    disk_.add("Plain Name/Contents/Info.plist",
              "<plist><dict><key>CFBundleVersion</key><string>1.0</string></dict></plist>");
    const auto bundle = bundles_.open(disk_.at("Plain Name"));
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->informationValue("CFBundleVersion"), "1.0");
}

TEST_F(LinuxBundlesTest, OpensAFolderWhosePropertyListIsBroken) {
    disk_.add("Broken.app/Contents/Info.plist", "garbage");
    const auto bundle = bundles_.open(disk_.at("Broken.app"));
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->informationValue("CFBundleVersion"), std::nullopt);
    disk_.addFifo("Fifo/Contents/Info.plist");
    EXPECT_TRUE(bundles_.open(disk_.at("Fifo")));
}

TEST_F(LinuxBundlesTest, OpensAPackageWithoutAPropertyList) {
    const auto bundle = bundles_.open(disk_.addFolder("Empty.plugin"));
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->informationValue("CFBundleVersion"), std::nullopt);
    EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(LinuxBundlesTest, OpensNothingElse) {
    EXPECT_FALSE(bundles_.open(disk_.addFolder("folder")));
    EXPECT_FALSE(bundles_.open(disk_.add("file.app", "text")));
    EXPECT_FALSE(bundles_.open(disk_.at("missing.app")));
    EXPECT_FALSE(bundles_.open(""));
    disk_.add("a/Contents/Info.plist", "");
    EXPECT_FALSE(bundles_.open(disk_.at("a") + std::string("\0b", 2)));
}

}  // namespace
}  // namespace installer::test
