#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux/process/PreferredLanguages.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> languagesOf(const std::map<std::string, std::string>& variables) {
    return preferredLanguages([variables](const std::string& name) -> std::optional<std::string> {
        const auto found = variables.find(name);
        if (found == variables.end()) return std::nullopt;
        return found->second;
    });
}

TEST(PreferredLanguages, ComeFromTheFourVariablesInTheirOrder) {
    EXPECT_THAT(languagesOf({{"LANG", "fr_FR.UTF-8"},
                             {"LC_MESSAGES", "it_IT"},
                             {"LC_ALL", "es_ES@euro"},
                             {"LANGUAGE", "de_AT:de:en_GB"}}),
                ElementsAre("de_AT", "de", "en_GB", "es_ES", "it_IT", "fr_FR"));
}

TEST(PreferredLanguages, EachIsListedOnceAndEmptyOnesNot) {
    EXPECT_THAT(languagesOf({{"LANGUAGE", ":de::de:"}, {"LC_ALL", ""}, {"LANG", "de.UTF-8"}}),
                ElementsAre("de"));
}

TEST(PreferredLanguages, AreNoneWithoutVariables) {
    EXPECT_THAT(languagesOf({}), IsEmpty());
}

TEST(PreferredLanguages, TheLocalesCAndPosixAreNone) {
    EXPECT_THAT(languagesOf({{"LANG", "C"}}), IsEmpty());
    EXPECT_THAT(languagesOf({{"LANG", "C.UTF-8"}}), IsEmpty());
    EXPECT_THAT(languagesOf({{"LANG", "POSIX"}}), IsEmpty());
}

TEST(PreferredLanguages, TheLocaleCHidesTheVariablesAfterIt) {
    EXPECT_THAT(languagesOf({{"LC_ALL", "C"}, {"LANG", "de_DE.UTF-8"}}), IsEmpty());
    EXPECT_THAT(languagesOf({{"LANGUAGE", "fr"}, {"LC_ALL", "C"}, {"LANG", "de_DE.UTF-8"}}),
                ElementsAre("fr"));
}

TEST(PreferredLanguagesChosenLanguage, IsTheFirstPreferredOneThatIsThere) {
    EXPECT_EQ(chosenLanguage({"fr", "de", "en"}, {"en", "de"}), "de");
}

TEST(PreferredLanguagesChosenLanguage, ALanguageStandsInForItsRegions) {
    EXPECT_EQ(chosenLanguage({"de_AT"}, {"en", "de"}), "de");
    EXPECT_EQ(chosenLanguage({"de_AT", "fr"}, {"fr", "de"}), "de");
}

TEST(PreferredLanguagesChosenLanguage, TheRegionsOwnWinsHoweverItIsWritten) {
    EXPECT_EQ(chosenLanguage({"de_AT"}, {"de", "de_AT"}), "de_AT");
    EXPECT_EQ(chosenLanguage({"pt_BR"}, {"pt", "pt-br"}), "pt-br");
    EXPECT_EQ(chosenLanguage({"pt-BR"}, {"pt", "pt_BR"}), "pt_BR");
}

TEST(PreferredLanguagesChosenLanguage, IsEnglishWhenNoPreferredOneIsThere) {
    EXPECT_EQ(chosenLanguage({"ja"}, {"de", "en", "fr"}), "en");
    EXPECT_EQ(chosenLanguage({}, {"de", "en"}), "en");
}

TEST(PreferredLanguagesChosenLanguage, IsTheFirstByNameWithoutEnglish) {
    EXPECT_EQ(chosenLanguage({"ja"}, {"fr", "de", "it"}), "de");
}

TEST(PreferredLanguagesChosenLanguage, IsNoneWhenNoneIsThere) {
    EXPECT_EQ(chosenLanguage({"de"}, {}), "");
}

}  // namespace
}  // namespace installer::test
