#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/text/ShownLength.h"
#include "product/RtfResource.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RtfResourceTest : public testing::Test {
  protected:
    RtfResourceTest() { fake.bundle.resources["register.rtf"] = path; }

    const std::string path = "/Installer.app/Contents/Resources/en.lproj/register.rtf";
    FakePlatform fake;
};

TEST_F(RtfResourceTest, GivesTheBundlesFileAsStyledText) {
    fake.memory.addFile(path, "{\\rtf1 {\\b Done.} Thank you.\\par}");
    const auto text = rtfResource(fake.platform, "register");
    ASSERT_TRUE(text);
    EXPECT_EQ(text->paragraphs,
              (std::vector<Paragraph>{{.runs = {{"Done.", {.bold = true}}, {" Thank you.", {}}}}}));
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

TEST_F(RtfResourceTest, IsReadAnewOnEveryCall) {
    fake.memory.addFile(path, "{\\rtf1 one}");
    EXPECT_EQ(rtfResource(fake.platform, "register")->plainText(), "one");
    fake.memory.addFile(path, "{\\rtf1 two}");
    EXPECT_EQ(rtfResource(fake.platform, "register")->plainText(), "two");
}

TEST_F(RtfResourceTest, IsNoneWhenTheBundleHasNoSuchFile) {
    EXPECT_FALSE(rtfResource(fake.platform, "proceed"));
    EXPECT_THAT(fake.log.lines, ElementsAre("the resource proceed.rtf is missing"));
}

TEST_F(RtfResourceTest, IsNoneWhenTheFileCannotBeRead) {
    EXPECT_FALSE(rtfResource(fake.platform, "register"));
    EXPECT_THAT(fake.log.lines, ElementsAre(path + ": No such file or directory"));
}

TEST_F(RtfResourceTest, IsNoneWhenTheFileIsNoRtf) {
    fake.memory.addFile(path, "Done. %@ %s");
    EXPECT_FALSE(rtfResource(fake.platform, "register"));
    EXPECT_THAT(fake.log.lines, ElementsAre(path + ": the text does not begin with {\\rtf"));
}

TEST_F(RtfResourceTest, SaysAtTheEndOfAPageThatIsTooLongWhereAllOfItIs) {
    fake.bundle.tables["Localizable"]["text_cut_fmt"] = "See %@";
    fake.memory.addFile(path, "{\\rtf1 " + std::string(ShownLength::mostBytes + 1, 'x') + "}");
    const auto text = rtfResource(fake.platform, "register");
    ASSERT_TRUE(text);
    EXPECT_TRUE(text->plainText().ends_with("x\n\nSee " + path));
}

TEST_F(RtfResourceTest, IsNoneWhenTheFileIsCutShort) {
    fake.memory.addFile(path, "{\\rtf1 {\\b Done.} Thank");
    EXPECT_FALSE(rtfResource(fake.platform, "register"));
    EXPECT_THAT(fake.log.lines, ElementsAre(path + ": the text ends before its groups do"));
}

TEST_F(RtfResourceTest, IsNoneWhenTheFileIsLargerThanAnyText) {
    fake.memory.addFile(path, "{\\rtf1 " + std::string(std::size_t{17} << 20U, 'a') + "}");
    EXPECT_FALSE(rtfResource(fake.platform, "register"));
    EXPECT_THAT(fake.log.lines, ElementsAre(path + ": the text ends before its groups do"));
}

TEST_F(RtfResourceTest, ReasonsAreNoFormats) {
    EXPECT_FALSE(rtfResource(fake.platform, "100%@"));
    EXPECT_THAT(fake.log.lines, ElementsAre("the resource 100%@.rtf is missing"));
}

TEST(RtfResourceNilText, ReadsNil) {
    EXPECT_EQ(nilText(), (StyledText{.paragraphs = {{.runs = {{.text = "nil"}}}}}));
}

}  // namespace
}  // namespace installer::test
