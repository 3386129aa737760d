#include <string>

#include <gtest/gtest.h>

#include "foundation/text/NamePattern.h"

namespace installer::test {
namespace {

struct PatternRow {
    std::string name;
    std::string pattern;
    bool isLike;
};

class NamePattern : public testing::TestWithParam<PatternRow> {};

TEST_P(NamePattern, StandsForTheWholeName) {
    EXPECT_EQ(isLike(GetParam().name, GetParam().pattern), GetParam().isLike)
        << GetParam().name << " like " << GetParam().pattern;
}

INSTANTIATE_TEST_SUITE_P(Plain, NamePattern,
                         testing::Values(PatternRow{"F.plugin", "F.plugin", true},
                                         PatternRow{"f.plugin", "F.plugin", false},
                                         PatternRow{"F.plugin 2", "F.plugin", false},
                                         PatternRow{"My F.plugin", "F.plugin", false},
                                         PatternRow{"Fxplugin", "F.plugin", false},
                                         PatternRow{"", "", true}, PatternRow{"a", "", false},
                                         PatternRow{"", "a", false}));

INSTANTIATE_TEST_SUITE_P(
    Asterisk, NamePattern,
    testing::Values(PatternRow{"", "*", true}, PatternRow{"any", "*", true},
                    PatternRow{"any", "**", true}, PatternRow{"a*b", "a*b", true},
                    PatternRow{"ab", "a*b", true}, PatternRow{"a..b..b", "a*b", true},
                    PatternRow{"a..b.", "a*b", false}, PatternRow{"xaaby", "*a?y", true},
                    PatternRow{"mississippi", "m*iss*ip*i", true},
                    PatternRow{"mississippi", "m*iss*iss*iss*", false}));

INSTANTIATE_TEST_SUITE_P(QuestionMark, NamePattern,
                         testing::Values(PatternRow{"?", "?", true}, PatternRow{"x", "?", true},
                                         PatternRow{"", "?", false}, PatternRow{"xy", "?", false},
                                         PatternRow{"xy", "??", true}));

// A character is a code point, and a byte that is part of none is one too.
INSTANTIATE_TEST_SUITE_P(
    Characters, NamePattern,
    testing::Values(PatternRow{"\u20AC", "?", true}, PatternRow{"\u20AC", "??", false},
                    PatternRow{"\u20AC", "*??", false}, PatternRow{"a\u20ACb", "a*?b", true},
                    PatternRow{"\xFF", "?", true}, PatternRow{"\xE2\x82", "??", true}));

INSTANTIATE_TEST_SUITE_P(
    NothingElseHasAMeaning, NamePattern,
    testing::Values(PatternRow{"[ab]", "[ab]", true}, PatternRow{"a", "[ab]", false},
                    PatternRow{"\\*", "\\*", true}, PatternRow{"\\x", "\\*", true},
                    PatternRow{"*", "\\*", false}, PatternRow{"it's \"%@\"", "it's \"%@\"", true}));

TEST(NamePatternCost, IsAtMostTheProductOfTheLengths) {
    std::string pattern;
    for (int index = 0; index < 2000; ++index) pattern += "*a";
    EXPECT_FALSE(isLike(std::string(4000, 'a') + "b", pattern));
}

}  // namespace
}  // namespace installer::test
