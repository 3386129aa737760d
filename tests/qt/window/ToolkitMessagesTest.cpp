#include <QMessageLogContext>
#include <thread>

#include <gmock/gmock.h>

#include "qt/window/ToolkitMessages.h"
#include "tests/support/FakePlatform.h"

namespace {

using namespace installer;
using testing::ElementsAre;

TEST(ToolkitMessages, StandInTheSystemLog) {
    test::RecordingLog log;
    {
        const ToolkitMessages messages(log);
        qWarning("something odd");
        qDebug("a detail");
    }
    qWarning("not for this log any more");
    EXPECT_THAT(log.lines, ElementsAre("something odd"));
}

TEST(ToolkitMessages, RemarksAboutHarmlessSurroundingsAreLeftOut) {
    test::RecordingLog log;
    const ToolkitMessages messages(log);
    qWarning("QStandardPaths: XDG_RUNTIME_DIR not set, defaulting to '/tmp/runtime-root'");
    qWarning("Detected locale \"C\" with character encoding \"ANSI_X3.4-1968\"");
    EXPECT_THAT(log.lines, ElementsAre());
}

TEST(ToolkitMessages, DoNotReachTheLogFromOtherThreads) {
    test::RecordingLog log;
    const ToolkitMessages messages(log);
    testing::internal::CaptureStderr();
    std::thread([] { qWarning("from another thread"); }).join();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "from another thread\n");
    EXPECT_THAT(log.lines, ElementsAre());
}

}  // namespace
