#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "install/engine/FileErrorAlerts.h"
#include "install/run/InstallProgress.h"
#include "tests/install/engine/EngineParts.h"
#include "tests/support/FakeWindow.h"

namespace installer::test {
namespace {

using testing::ElementsAre;

TEST(FileErrorAlerts, AFailedItemFailsTheRunAndIsLoggedAndShown) {
    EngineParts engine;
    engine.errors.showFileErrorUI("/a/50% of it");
    EXPECT_TRUE(engine.run.fileOpErrorOccurred);
    EXPECT_THAT(engine.fake.log.lines, ElementsAre("Could not install file: /a/50% of it"));
    ASSERT_EQ(engine.fake.alerts.shown.size(), 1U);
    const Alert& alert = engine.fake.alerts.shown.front();
    EXPECT_EQ(alert.identifier, "install-error");
    EXPECT_EQ(alert.title, "Sorry");
    EXPECT_EQ(alert.message, "[] failed at /a/50% of it");
    EXPECT_THAT(alert.buttons, ElementsAre("Go on"));
}

TEST(FileErrorAlerts, EachFailureHasItsNumber) {
    EngineParts engine;
    engine.errors.showFileErrorUI("/a");
    engine.errors.showFileErrorUI("/b");
    ASSERT_EQ(engine.fake.alerts.shown.size(), 2U);
    EXPECT_EQ(engine.fake.alerts.shown[0].number, 1U);
    EXPECT_EQ(engine.fake.alerts.shown[1].number, 2U);
}

TEST(FileErrorAlerts, EachFailureNamesThePlaceOfItsItem) {
    EngineParts engine;
    FakeProgressIndicator indicator;
    InstallProgress progress(indicator, engine.fake.clock);
    engine.run.setProgress(&progress);
    progress.begin(30, 3);
    progress.beginItem(10);
    engine.errors.showFileErrorUI("/a");
    progress.beginItem(10);
    progress.beginItem(10);
    engine.errors.showFileErrorUI("/c");
    ASSERT_EQ(engine.fake.alerts.shown.size(), 2U);
    EXPECT_EQ(engine.fake.alerts.shown[0].item, 1U);
    EXPECT_EQ(engine.fake.alerts.shown[0].items, 3U);
    EXPECT_EQ(engine.fake.alerts.shown[1].item, 3U);
    EXPECT_EQ(engine.fake.alerts.shown[1].number, 2U);
}

TEST(FileErrorAlerts, ARunWithoutProgressKnowsNoPlace) {
    EngineParts engine;
    engine.errors.showFileErrorUI("/a");
    ASSERT_EQ(engine.fake.alerts.shown.size(), 1U);
    EXPECT_EQ(engine.fake.alerts.shown.front().item, 0U);
}

// The person may leave the alert on the screen for hours, and the machine may be gone by then.
TEST(FileErrorAlerts, TheFailureIsRecordedAndLoggedBeforeTheAlertIsShown) {
    EngineParts engine;
    int shown = 0;
    engine.fake.alerts.whenShown = [&] {
        ++shown;
        EXPECT_TRUE(engine.run.fileOpErrorOccurred);
        EXPECT_THAT(engine.fake.log.lines, ElementsAre("Could not install file: /a"));
    };
    engine.errors.showFileErrorUI("/a");
    EXPECT_EQ(shown, 1);
}

TEST(FileErrorAlerts, TheErrorIsRecordedAndLoggedBeforeTheQuestionIsAsked) {
    EngineParts engine;
    int shown = 0;
    engine.fake.alerts.whenShown = [&] {
        ++shown;
        EXPECT_TRUE(engine.run.fileOpErrorOccurred);
        EXPECT_THAT(engine.fake.log.lines,
                    ElementsAre("File  operation error: disk full with file: /a"));
    };
    EXPECT_TRUE(engine.errors.fileManagerShouldProceedAfterError("disk full", "/a"));
    EXPECT_EQ(shown, 1);
}

TEST(FileErrorAlerts, MissingTextsAreEmpty) {
    EngineParts engine;
    engine.fake.bundle.tables.clear();
    engine.errors.showFileErrorUI("/a");
    ASSERT_EQ(engine.fake.alerts.shown.size(), 1U);
    EXPECT_EQ(engine.fake.alerts.shown.front().title, "");
    EXPECT_EQ(engine.fake.alerts.shown.front().message, "");
    EXPECT_THAT(engine.fake.alerts.shown.front().buttons, ElementsAre(""));
}

TEST(FileErrorAlerts, TheQuestionNamesTheErrorAndThePathAndOffersToStop) {
    EngineParts engine;
    EXPECT_TRUE(engine.errors.fileManagerShouldProceedAfterError("disk full", "/a"));
    EXPECT_TRUE(engine.run.fileOpErrorOccurred);
    EXPECT_THAT(engine.fake.log.lines,
                ElementsAre("File  operation error: disk full with file: /a"));
    ASSERT_EQ(engine.fake.alerts.shown.size(), 1U);
    const Alert& alert = engine.fake.alerts.shown.front();
    EXPECT_EQ(alert.identifier, "file-operation-error");
    EXPECT_EQ(alert.title, "Sorry");
    EXPECT_EQ(alert.message, "[disk full] failed at /a");
    EXPECT_THAT(alert.buttons, ElementsAre("Go on", "Stop"));
}

TEST(FileErrorAlerts, StoppingAnswersNoAndTheRunHasFailedAllTheSame) {
    EngineParts engine;
    engine.fake.alerts.answer = 1;
    EXPECT_FALSE(engine.errors.fileManagerShouldProceedAfterError("disk full", "/a"));
    EXPECT_TRUE(engine.run.fileOpErrorOccurred);
}

TEST(FileErrorAlerts, EachFailedItemIsListedOnceInOrder) {
    EngineParts engine;
    engine.errors.showFileErrorUI("/b");
    engine.errors.showFileErrorUI("/a");
    EXPECT_TRUE(engine.errors.fileManagerShouldProceedAfterError("disk full", "/b"));
    EXPECT_TRUE(engine.errors.fileManagerShouldProceedAfterError("disk full", "/c"));
    EXPECT_THAT(engine.run.failedPaths, ElementsAre("/b", "/a", "/c"));
}

}  // namespace
}  // namespace installer::test
