#include <string>

#include <gtest/gtest.h>

#include "product/LocalizedText.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

class LocalizedTextTest : public testing::Test {
  protected:
    FakeBundle bundle;
};

TEST_F(LocalizedTextTest, ATextComesFromTheDefaultTable) {
    bundle.tables["Localizable"]["continue"] = "Weiter";
    bundle.tables["installer"]["continue"] = "another table";
    EXPECT_EQ(localizedText(bundle, "continue", "can't find"), "Weiter");
}

TEST_F(LocalizedTextTest, AMissingTextGivesTheFallback) {
    EXPECT_EQ(localizedText(bundle, "continue", "can't find"), "can't find");
    EXPECT_EQ(localizedText(bundle, "continue"), "");
}

TEST_F(LocalizedTextTest, AnEmptyTextIsNotAMissingOne) {
    bundle.tables["Localizable"]["continue"] = "";
    EXPECT_EQ(localizedText(bundle, "continue", "can't find"), "");
}

TEST_F(LocalizedTextTest, NamesForReadingComeFromTheInstallerTable) {
    bundle.tables["installer"]["product_name"] = "Filters 2";
    bundle.tables["Localizable"]["product_name"] = "another table";
    EXPECT_EQ(installerText(bundle, "product_name"), "Filters 2");
    EXPECT_EQ(installerText(bundle, "company_name"), "");
}

TEST_F(LocalizedTextTest, NamesOfFoldersComeFromTheInstallerTable) {
    bundle.tables["installer"]["company_name"] = "Größe & Söhne";
    EXPECT_EQ(folderName(bundle, "company_name"), "Größe & Söhne");
}

TEST_F(LocalizedTextTest, AMissingNameOfAFolderGivesTheKeysOwnText) {
    bundle.tables["Localizable"]["company_name"] = "another table";
    EXPECT_EQ(folderName(bundle, "company_name"), "company_name");
}

struct Name {
    std::string meaning;
    std::string name;
};

class LocalizedTextNameThatLeadsElsewhere : public LocalizedTextTest,
                                            public testing::WithParamInterface<Name> {};

TEST_P(LocalizedTextNameThatLeadsElsewhere, CountsAsMissing) {
    bundle.tables["installer"]["product_name"] = GetParam().name;
    EXPECT_EQ(folderName(bundle, "product_name"), "product_name");
}

INSTANTIATE_TEST_SUITE_P(
    Names, LocalizedTextNameThatLeadsElsewhere,
    testing::Values(Name{"Empty", ""}, Name{"Separator", "/"}, Name{"Separators", "///"},
                    Name{"Dot", "."}, Name{"TwoDots", ".."}, Name{"DotSeparator", "./"},
                    Name{"TwoDotsSeparator", "../"}, Name{"SeparatorTwoDots", "/.."},
                    Name{"TwoDotsAtTheEnd", "a/.."}, Name{"TwoDotsInside", "a/../b"},
                    Name{"SeveralUpwards", "../../etc"}, Name{"DotInside", "a/./b"},
                    Name{"TwoDotsAfterTwoSeparators", "a//.."}),
    [](const auto& row) { return row.param.meaning; });

class LocalizedTextNameWithDotsOrSeparators : public LocalizedTextTest,
                                              public testing::WithParamInterface<Name> {};

TEST_P(LocalizedTextNameWithDotsOrSeparators, IsKept) {
    bundle.tables["installer"]["product_name"] = GetParam().name;
    EXPECT_EQ(folderName(bundle, "product_name"), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Names, LocalizedTextNameWithDotsOrSeparators,
                         testing::Values(Name{"ThreeDots", "..."}, Name{"DotBefore", ".hidden"},
                                         Name{"DotAfter", "Acme Inc."},
                                         Name{"DotsInsideAComponent", "a..b"},
                                         Name{"TwoComponents", "Acme/Filters"},
                                         Name{"SeparatorBefore", "/Acme"},
                                         Name{"SeparatorAfter", "Acme/"}, Name{"Space", " "}),
                         [](const auto& row) { return row.param.meaning; });

}  // namespace
}  // namespace installer::test
