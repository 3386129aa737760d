#include <string>

#include <gtest/gtest.h>

#include "foundation/Format.h"

namespace installer {
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
        HostileFormat{"", ""}, HostileFormat{"%n", "%n"}, HostileFormat{"%s", "%s"},
        HostileFormat{"% @", "% @"}, HostileFormat{"%", "%"}, HostileFormat{"100 %", "100 %"},
        HostileFormat{"%@%", "X%"}, HostileFormat{"%%", "%"}, HostileFormat{"%%@", "%@"},
        HostileFormat{"%%%@", "%X"}, HostileFormat{"%%%", "%%"}, HostileFormat{"%%1$@", "%1$@"},
        HostileFormat{"%@%@", "X"}, HostileFormat{"a%9$@b", "ab"}, HostileFormat{"a%0$@b", "ab"},
        HostileFormat{"a%00001$@b", "aXb"}, HostileFormat{"%1", "%1"}, HostileFormat{"%1$", "%1$"},
        HostileFormat{"%1$s", "%1$s"}, HostileFormat{"%$@", "%$@"}, HostileFormat{"%-1$@", "%-1$@"},
        HostileFormat{"%1@", "%1@"}, HostileFormat{"%1$%@", "%1$X"},
        HostileFormat{"%18446744073709551617$@", ""},
        HostileFormat{"%999999999999999999999999999999$@", ""}));

TEST(Format, WithoutArgumentsPlaceholdersGiveNothing) {
    EXPECT_EQ(formatted("a%@b%1$@c%0$@d", {}), "abcd");
}

}  // namespace
}  // namespace installer
