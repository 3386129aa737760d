#include <cstddef>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "foundation/values/Uuid.h"

namespace installer::test {
namespace {

bool isUpperCaseHexadecimal(char character) {
    return std::string("0123456789ABCDEF").find(character) != std::string::npos;
}

TEST(Uuid, HasTheStandardTextForm) {
    const std::string text = newUuidText();
    ASSERT_EQ(text.size(), 36U);
    for (std::size_t index = 0; index < text.size(); ++index) {
        const bool isHyphen = index == 8 || index == 13 || index == 18 || index == 23;
        EXPECT_TRUE(isHyphen ? text[index] == '-' : isUpperCaseHexadecimal(text[index])) << text;
    }
}

TEST(Uuid, IsMarkedAsRandom) {
    for (int round = 0; round < 64; ++round) {
        const std::string text = newUuidText();
        EXPECT_EQ(text.at(14), '4') << text;
        EXPECT_NE(std::string("89AB").find(text.at(19)), std::string::npos) << text;
    }
}

TEST(Uuid, IsNeverTheSameTwice) {
    std::set<std::string> texts;
    for (int round = 0; round < 1000; ++round) texts.insert(newUuidText());
    EXPECT_EQ(texts.size(), 1000U);
}

TEST(Uuid, EveryOtherDigitVaries) {
    const std::string first = newUuidText();
    std::set<std::size_t> varying;
    for (int round = 0; round < 200; ++round) {
        const std::string other = newUuidText();
        for (std::size_t index = 0; index < first.size(); ++index) {
            if (other[index] != first[index]) varying.insert(index);
        }
    }
    EXPECT_EQ(varying.size(), 36U - 4U - 1U);  // all but the hyphens and the version
}

}  // namespace
}  // namespace installer::test
