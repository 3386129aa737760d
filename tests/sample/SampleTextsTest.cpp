#include <filesystem>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux/bundle/LinuxBundle.h"
#include "linux/bundle/StringsTable.h"
#include "privileged/files/RegularFile.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* resources = SAMPLE_RESOURCES;

std::set<std::string> sampleLanguages() {
    std::set<std::string> languages;
    for (const auto& entry : std::filesystem::directory_iterator(resources))
        if (entry.path().extension() == ".lproj") languages.insert(entry.path().stem().string());
    return languages;
}

StringsTable sampleTable(const std::string& language, const std::string& name) {
    const std::string path = std::string(resources) + "/" + language + ".lproj/" + name;
    const auto bytes = readRegularFile(path, 1 << 20);
    EXPECT_TRUE(bytes) << path;
    return parseStringsTable(bytes ? bytes.value() : "");
}

std::set<std::string> keys(const StringsTable& table) {
    std::set<std::string> found;
    for (const auto& [key, text] : table.entries) found.insert(key);
    return found;
}

class SampleTexts : public testing::TestWithParam<const char*> {};

TEST_P(SampleTexts, EachLanguageHasTheSameKeysAndNothingThatIsNoText) {
    const auto english = keys(sampleTable("en", GetParam()));
    EXPECT_FALSE(english.empty());
    for (const auto& language : sampleLanguages()) {
        SCOPED_TRACE(language);
        const auto table = sampleTable(language, GetParam());
        EXPECT_EQ(keys(table), english);
        for (const auto& problem : table.problems)
            ADD_FAILURE() << "line " << problem.line << ": " << problem.message;
    }
}

INSTANTIATE_TEST_SUITE_P(Tables, SampleTexts,
                         testing::Values("Localizable.strings", "installer.strings"),
                         [](const auto& row) {
                             return std::filesystem::path(row.param).stem().string();
                         });

TEST(SampleTextsLanguages, AreThereInSixLanguages) {
    EXPECT_THAT(sampleLanguages(), ElementsAre("ar", "de", "en", "es", "fr", "ja"));
}

TEST(SampleTextsLanguages, ABundleSpeaksEachOfItsLanguagesWithoutComplaint) {
    const ScratchFolder disk;
    disk.addFolder("Sample.app/Contents");
    std::filesystem::create_directory_symlink(resources, disk.at("Sample.app/Contents/Resources"));
    std::set<std::string> words;
    for (const auto& language : sampleLanguages()) {
        SCOPED_TRACE(language);
        RecordingLog log;
        const LinuxBundle bundle(disk.at("Sample.app"), {language}, log);
        EXPECT_EQ(bundle.localization(), language);
        words.insert(bundle.localizedString("go_back", "Localizable").value_or(""));
        EXPECT_EQ(bundle.localizedString("product_name", "installer"), "Tonewright 2");
        EXPECT_EQ(bundle.localizedString("company_name", "installer"), "Quarrytone");
        EXPECT_THAT(log.lines, IsEmpty());
    }
    EXPECT_EQ(words.size(), sampleLanguages().size());
}

}  // namespace
}  // namespace installer::test
