#include <algorithm>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "install/run/InstallProgress.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/FakeWindow.h"

namespace installer::test {
namespace {

using testing::Each;
using testing::SizeIs;

class InstallProgressTest : public testing::Test {
  protected:
    [[nodiscard]] double shown() const { return indicator.fractions.back(); }
    void expectNeverBackwards() const {
        EXPECT_TRUE(std::is_sorted(indicator.fractions.begin(), indicator.fractions.end()));
        EXPECT_THAT(indicator.fractions, Each(testing::AllOf(testing::Ge(0.0), testing::Le(1.0))));
    }

    FakeProgressIndicator indicator;
    RecordingClock clock;
    InstallProgress progress{indicator, clock};
};

TEST_F(InstallProgressTest, ShowsTheBytesAsAFractionOfTheRun) {
    progress.begin(200, 0);
    EXPECT_EQ(shown(), 0.0);
    progress.beginItem(150);
    progress.bytesCopied(50);
    EXPECT_EQ(shown(), 0.25);
    progress.bytesCopied(100);
    EXPECT_EQ(shown(), 0.75);
    progress.beginItem(50);
    progress.bytesCopied(50);
    EXPECT_EQ(shown(), 1.0);
    expectNeverBackwards();
}

TEST_F(InstallProgressTest, NamesTheFilesOfAnItemThatTakesASecond) {
    int told = 0;
    progress.onReport([&] { ++told; });
    progress.begin(200, 2);
    progress.beginItem(100);
    progress.fileBegins("one");
    EXPECT_EQ(progress.report().file, "") << "it would only flicker";
    clock.passed += std::chrono::seconds(1);
    const int before = told;
    progress.fileBegins("two");
    EXPECT_EQ(progress.report().file, "two");
    progress.fileBegins("three");
    EXPECT_EQ(told, before + 1) << "the window is told ten times a second at most";
    progress.beginItem(100);
    clock.passed += std::chrono::seconds(1);
    EXPECT_EQ(progress.report().file, "") << "an item of one file";
}

TEST_F(InstallProgressTest, AnItemThatEndsHasUsedItsWholeBudget) {
    progress.begin(100, 0);
    progress.beginItem(40);
    progress.bytesCopied(10);
    progress.endItem();
    EXPECT_EQ(shown(), 0.4);
    progress.endItem();
    EXPECT_EQ(shown(), 0.4);
}

TEST_F(InstallProgressTest, ASecondAttemptGoesNeitherBackNorBeyondItsItem) {
    progress.begin(100, 0);
    progress.beginItem(50);
    progress.bytesCopied(30);
    for (int part = 0; part < 5; ++part) progress.bytesCopied(10);
    EXPECT_EQ(shown(), 0.5);
    progress.beginItem(50);
    EXPECT_EQ(shown(), 0.5);
    progress.bytesCopied(10);
    EXPECT_EQ(shown(), 0.6);
    expectNeverBackwards();
}

TEST_F(InstallProgressTest, NoBytesShowTheSameFractionAgain) {
    progress.begin(10, 0);
    progress.beginItem(5);
    progress.bytesCopied(5);
    const auto before = indicator.fractions.size();
    progress.bytesCopied(0);
    progress.bytesCopied(0);
    EXPECT_THAT(indicator.fractions, SizeIs(before + 2));
    EXPECT_EQ(shown(), 0.5);
}

TEST_F(InstallProgressTest, BytesThatBelongToNoItemShowTheSameFractionAgain) {
    progress.begin(10, 0);
    progress.bytesCopied(7);
    EXPECT_EQ(shown(), 0.0);
}

TEST_F(InstallProgressTest, ARunOfNoBytesIsFullWhenItIsComplete) {
    progress.begin(0, 0);
    progress.beginItem(0);
    progress.bytesCopied(0);
    progress.endItem();
    EXPECT_EQ(shown(), 0.0);
    progress.complete();
    EXPECT_EQ(shown(), 1.0);
}

TEST_F(InstallProgressTest, APayloadThatGrewDoesNotGoBeyondTheEnd) {
    progress.begin(10, 0);
    progress.beginItem(30);
    progress.bytesCopied(20);
    EXPECT_EQ(shown(), 1.0);
    progress.beginItem(30);
    EXPECT_EQ(shown(), 1.0);
}

TEST_F(InstallProgressTest, APayloadThatShrankIsFullWhenItIsComplete) {
    progress.begin(10, 0);
    progress.beginItem(5);
    progress.endItem();
    EXPECT_EQ(shown(), 0.5);
    progress.complete();
    EXPECT_EQ(shown(), 1.0);
}

TEST_F(InstallProgressTest, ReportsTheNumberOfTheItemAndItsBytes) {
    progress.begin(100, 2);
    EXPECT_EQ(progress.report().item, 0U);
    EXPECT_EQ(progress.report().items, 2U);
    progress.beginItem(40);
    progress.bytesCopied(30);
    EXPECT_EQ(progress.report().item, 1U);
    EXPECT_EQ(progress.report().itemBytes, 30U);
    EXPECT_EQ(progress.report().itemTotal, 40U);
    progress.endItem();
    progress.beginItem(60);
    EXPECT_EQ(progress.report().item, 2U);
    progress.beginItem(0);
    EXPECT_EQ(progress.report().item, 2U);
    progress.begin(100, 3);
    EXPECT_EQ(progress.report().item, 0U);
}

TEST_F(InstallProgressTest, TellsOfItsReportTenTimesASecondAtMost) {
    int told = 0;
    progress.onReport([&told] { ++told; });
    progress.begin(1000, 1000);
    for (int item = 0; item < 100; ++item) {
        progress.beginItem(1);
        progress.bytesCopied(1);
        clock.passed += std::chrono::milliseconds(10);
    }
    EXPECT_EQ(told, 10);
}

TEST_F(InstallProgressTest, ReportsTheTimeThatIsLeftOnceItIsKnown) {
    progress.begin(1000, 1);
    progress.beginItem(1000);
    EXPECT_EQ(progress.report().timeLeft, std::nullopt);
    for (int second = 0; second < 5; ++second) {
        clock.passed += std::chrono::seconds(1);
        progress.bytesCopied(100);
    }
    EXPECT_EQ(progress.report().timeLeft, std::chrono::seconds(5));
}

TEST_F(InstallProgressTest, TheNextRunStartsAnew) {
    progress.begin(10, 0);
    progress.beginItem(10);
    progress.complete();
    progress.begin(10, 0);
    EXPECT_EQ(shown(), 0.0);
    progress.beginItem(5);
    progress.endItem();
    EXPECT_EQ(shown(), 0.5);
}

}  // namespace
}  // namespace installer::test
