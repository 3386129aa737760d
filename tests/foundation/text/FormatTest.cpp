#include <string>

#include <gtest/gtest.h>

#include "foundation/text/Format.h"

namespace installer::test {
namespace {

TEST(Format, FillsPlaceholdersInTheirOrder) {
    EXPECT_EQ(formatted("%@ Installer %@.log", {"Acme", "2"}), "Acme Installer 2.log");
}

TEST(Format, FillsNumberedPlaceholdersInAnyOrderAndAnyNumberOfTimes) {
    EXPECT_EQ(formatted("%2$@ of %1$@, %2$@", {"Acme", "Filters"}), "Filters of Acme, Filters");
}

TEST(Format, NumberedPlaceholdersDoNotUseUpTheNextArgument) {
    EXPECT_EQ(formatted("%2$@ %@ %@", {"a", "b"}), "b a b");
}

TEST(Format, ArgumentsAreNotReadAsFormats) {
    EXPECT_EQ(formatted("%@-%@", {"%@%2$@%%", "b"}), "%@%2$@%%-b");
}

TEST(Format, KeepsCharactersOfEveryScriptAndBytesThatAreNoText) {
    EXPECT_EQ(formatted("é%@\xFF", {"日本"}), "é日本\xFF");
}

TEST(Format, KeepsNulBytes) {
    const std::string format("a\0%@", 4);
    EXPECT_EQ(formatted(format, {"b"}), std::string("a\0b", 3));
}

struct HostileFormat {
    std::string name;
    std::string format;
    std::string expected;
};

class FormatWithOneArgument : public testing::TestWithParam<HostileFormat> {};

TEST_P(FormatWithOneArgument, GivesItsTextAndNothingElse) {
    EXPECT_EQ(formatted(GetParam().format, {"X"}), GetParam().expected) << GetParam().format;
}

INSTANTIATE_TEST_SUITE_P(
    Hostile, FormatWithOneArgument,
    testing::Values(
        HostileFormat{"Empty", "", ""}, HostileFormat{"N", "%n", "%n"},
        HostileFormat{"S", "%s", "%s"}, HostileFormat{"SpaceBeforeAt", "% @", "% @"},
        HostileFormat{"PercentAlone", "%", "%"}, HostileFormat{"PercentAtTheEnd", "100 %", "100 %"},
        HostileFormat{"PercentAfterAPlaceholder", "%@%", "X%"},
        HostileFormat{"TwoPercents", "%%", "%"}, HostileFormat{"TwoPercentsAt", "%%@", "%@"},
        HostileFormat{"ThreePercentsAt", "%%%@", "%X"}, HostileFormat{"ThreePercents", "%%%", "%%"},
        HostileFormat{"TwoPercentsOneDollarAt", "%%1$@", "%1$@"},
        HostileFormat{"MorePlaceholdersThanArguments", "%@%@", "X"},
        HostileFormat{"PositionNine", "a%9$@b", "ab"},
        HostileFormat{"PositionZero", "a%0$@b", "ab"},
        HostileFormat{"PositionWithZerosBefore", "a%00001$@b", "aXb"},
        HostileFormat{"PositionAlone", "%1", "%1"},
        HostileFormat{"PositionAndDollarAlone", "%1$", "%1$"},
        HostileFormat{"PositionDollarS", "%1$s", "%1$s"},
        HostileFormat{"DollarAtWithoutPosition", "%$@", "%$@"},
        HostileFormat{"NegativePosition", "%-1$@", "%-1$@"},
        HostileFormat{"PositionWithoutDollar", "%1@", "%1@"},
        HostileFormat{"CutPlaceholderBeforeAnother", "%1$%@", "%1$X"},
        HostileFormat{"PositionThatWraps64BitsToOne", "%18446744073709551617$@", ""},
        HostileFormat{"PositionOfThirtyDigits", "%999999999999999999999999999999$@", ""}),
    [](const auto& row) { return row.param.name; });

TEST(Format, WithoutArgumentsPlaceholdersGiveNothing) {
    EXPECT_EQ(formatted("a%@b%1$@c%0$@d", {}), "abcd");
}

}  // namespace
}  // namespace installer::test
