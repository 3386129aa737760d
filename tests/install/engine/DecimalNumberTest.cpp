#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "install/engine/DecimalNumber.h"

namespace installer::test {
namespace {

struct Row {
    std::string text;
    std::string padded;
};

class DecimalNumberThatWasParsed : public testing::TestWithParam<Row> {};

TEST_P(DecimalNumberThatWasParsed, IsWrittenWithFourCharactersAtLeast) {
    EXPECT_EQ(DecimalNumber::parsed(GetParam().text).paddedTo(4), GetParam().padded);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DecimalNumberThatWasParsed,
    testing::Values(Row{"1", "0001"}, Row{"0", "0000"}, Row{"007", "0007"}, Row{"9999", "9999"},
                    Row{"10000", "10000"}, Row{"202401011234567890123", "202401011234567890123"},
                    Row{"", "0000"}, Row{"beta", "0000"}, Row{"5b2", "0005"}, Row{"b5", "0000"},
                    Row{"1e3", "0001"}, Row{"  8", "0008"}, Row{"+5", "0005"}, Row{"-5", "-005"},
                    Row{"-0", "0000"}, Row{"--5", "0000"}, Row{"-12345", "-12345"},
                    Row{"\t8", "0008"}, Row{"\n8", "0008"}, Row{"\r8", "0008"}),
    [](const auto& test) {
        std::string name;
        for (const char character : test.param.text) {
            if (character < ' ') {
                name += "Control" + std::to_string(character);
            } else if (character == '-') {
                name += "Minus";
            } else if (character == '+') {
                name += "Plus";
            } else {
                name += character == ' ' ? '_' : character;
            }
        }
        return name.empty() ? "Empty" : name;
    });

TEST(DecimalNumber, NumbersOfAnySizeAreOrderedByValue) {
    const std::vector<std::string> ascending = {"-100000000000000000000000000000000001",
                                                "-20",
                                                "-3",
                                                "0",
                                                "4",
                                                "10",
                                                "99999999999999999999999999999999999",
                                                "100000000000000000000000000000000000",
                                                "100000000000000000000000000000000001"};
    for (std::size_t left = 0; left < ascending.size(); ++left) {
        for (std::size_t right = 0; right < ascending.size(); ++right) {
            EXPECT_EQ(
                DecimalNumber::parsed(ascending[left]) <=> DecimalNumber::parsed(ascending[right]),
                left <=> right)
                << ascending[left] << " and " << ascending[right];
        }
    }
}

TEST(DecimalNumber, ZerosBeforeANumberDoNotCount) {
    EXPECT_EQ(DecimalNumber::parsed("000100020003"), DecimalNumber::parsed("100020003"));
    EXPECT_EQ(DecimalNumber::parsed("-0000"), DecimalNumber());
}

}  // namespace
}  // namespace installer::test
