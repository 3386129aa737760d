#include <gtest/gtest.h>

#include "app/texts/SizeText.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

class SizeTextTest : public testing::Test {
  protected:
    FakeBundle bundle;
    [[nodiscard]] std::string text(std::uint64_t bytes) const { return sizeText(bundle, bytes); }
};

TEST_F(SizeTextTest, HasTheUnitThatFits) {
    EXPECT_EQ(text(0), "1 kB");
    EXPECT_EQ(text(1), "1 kB");
    EXPECT_EQ(text(12'000), "12 kB");
    EXPECT_EQ(text(12'000'000), "12 MB");
    EXPECT_EQ(text(12'000'000'000), "12 GB");
    EXPECT_EQ(text(5'000'000'000'000), "5000 GB");
}

TEST_F(SizeTextTest, HasOneDecimalBelowTen) {
    EXPECT_EQ(text(1'250'000), "1.3 MB");
    EXPECT_EQ(text(3'000'000), "3 MB");
    EXPECT_EQ(text(9'940'000), "9.9 MB");
    EXPECT_EQ(text(9'960'000), "10 MB");
    EXPECT_EQ(text(10'400'000), "10 MB");
}

TEST_F(SizeTextTest, IsNeverAThousandOfAUnit) {
    EXPECT_EQ(text(999'499), "999 kB");
    EXPECT_EQ(text(999'500), "1 MB");
    EXPECT_EQ(text(999'600'000), "1 GB");
}

TEST_F(SizeTextTest, IsWrittenAsInTheLanguageOfTheTable) {
    bundle.tables["Localizable"] = {{"size_mb_fmt", "%@ Mo"}, {"decimal_mark", ","}};
    EXPECT_EQ(text(1'200'000), "1,2 Mo");
}

}  // namespace
}  // namespace installer::test
