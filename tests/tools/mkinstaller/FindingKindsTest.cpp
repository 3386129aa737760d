#include <set>
#include <string>

#include <gmock/gmock.h>

#include "tests/tools/mkinstaller/ProductFolder.h"
#include "tools/mkinstaller/lint/basis/FindingKinds.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer::test {

namespace {

using testing::HasSubstr;

/// A section of the explanations, from its heading to the next one.
std::string sectionOf(const std::string& explanations, const std::string& heading) {
    const auto start = explanations.find(heading);
    if (start == std::string::npos) return {};
    return explanations.substr(start, explanations.find("\n## ", start + 1) - start);
}

TEST(FindingKindsTest, EachIsExplainedWithABadAndAGoodExample) {
    const std::string explanations = contentsOf(kitOfBuild().explanations()).value();
    for (const FindingKind& kind : findingKinds()) {
        const std::string heading = "\n## " + std::string(kind.code) +
                                    (kind.severity == Severity::error ? " error: " : " warning: ") +
                                    std::string(kind.title) + "\n";
        const std::string section = sectionOf(explanations, heading);
        EXPECT_THAT(section, HasSubstr("\n\nBad:\n\n    ")) << heading;
        EXPECT_THAT(section, HasSubstr("\n\nGood:\n\n    ")) << heading;
    }
}

TEST(FindingKindsTest, NothingElseIsExplained) {
    const std::string explanations = contentsOf(kitOfBuild().explanations()).value();
    std::size_t sections = 0;
    for (auto place = explanations.find("\n## M"); place != std::string::npos;
         place = explanations.find("\n## M", place + 1)) {
        ++sections;
    }
    EXPECT_EQ(sections, findingKinds().size());
}

TEST(FindingKindsTest, NoTwoHaveTheSameTitle) {
    std::set<std::string_view> titles;
    for (const FindingKind& kind : findingKinds()) titles.insert(kind.title);
    EXPECT_EQ(titles.size(), findingKinds().size());
}

TEST(FindingKindsTest, AreFoundByTheirCodes) {
    ASSERT_NE(findingKind("M014"), nullptr);
    EXPECT_EQ(findingKind("M014")->title, "a semicolon is missing");
    EXPECT_EQ(findingKind("M999"), nullptr);
}

}  // namespace

}  // namespace installer::test
