#include <string>

#include <gtest/gtest.h>

#include "app/HelpPage.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

struct Name {
    const char* row;
    const char* productName;
    const char* word;
};

class HelpPageWord : public testing::TestWithParam<Name> {};

TEST_P(HelpPageWord, IsTheNameWithoutWhiteSpaceInSmallLetters) {
    EXPECT_EQ(helpWord(GetParam().productName), GetParam().word);
}

INSTANTIATE_TEST_SUITE_P(
    Names, HelpPageWord,
    testing::Values(Name{"Words", "Photo Tool 2", "phototool2"},
                    Name{"Ends", "  Photo  Tool ", "phototool"},
                    Name{"OtherSpaces", "Photo\tTool\u00A0\u20032\u3000", "phototool2"},
                    Name{"LineEndsStay", "Photo\nTool\r\u2028X", "photo\ntool\r\u2028x"},
                    Name{"OtherScripts", "ÜBER Ñ ΦΩ Я", "überñφωя"}, Name{"Empty", "", ""},
                    Name{"OnlySpaces", " \t ", ""}),
    [](const auto& row) { return std::string(row.param.row); });

TEST(HelpPage, TheWordIsPutIntoTheMakersAddress) {
    FakePlatform fake;
    fake.bundle.tables["Localizable"]["help_url_format"] = "https://acme.example/%@/help?100%%";
    EXPECT_EQ(helpPageAddress(fake.bundle), "https://acme.example/filters2/help?100%");
}

TEST(HelpPage, TheWordIsEncodedAsAnAddressWantsIt) {
    FakePlatform fake;
    fake.bundle.tables["Localizable"]["help_url_format"] = "https://acme.example/ü/%@?a=1";
    fake.bundle.tables["installer"]["product_name"] = "Töne & Co/#1?";
    EXPECT_EQ(helpPageAddress(fake.bundle), "https://acme.example/ü/t%C3%B6ne%26co%2F%231%3F?a=1");
}

TEST(HelpPage, AMissingFormatGivesNoAddress) {
    FakePlatform fake;
    EXPECT_EQ(helpPageAddress(fake.bundle), "");
}

TEST(HelpPage, AMissingNameLeavesItsPlaceEmpty) {
    FakePlatform fake;
    fake.bundle.tables = {{"Localizable", {{"help_url_format", "https://acme.example/%@"}}}};
    EXPECT_EQ(helpPageAddress(fake.bundle), "https://acme.example/");
}

}  // namespace
}  // namespace installer::test
