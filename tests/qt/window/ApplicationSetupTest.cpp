#include <QApplication>
#include <QDialogButtonBox>
#include <QIcon>
#include <QImage>
#include <QPushButton>
#include <QTemporaryDir>
#include <clocale>
#include <optional>
#include <string>

#include <gmock/gmock.h>

#include "qt/values/QtText.h"
#include "qt/window/ApplicationSetup.h"
#include "tests/support/FakePlatform.h"

namespace {

using namespace installer;
using testing::ElementsAre;

TEST(ApplicationSetupReadingDirection, IsThatOfTheLanguage) {
    for (const char* language : {"ar", "he", "fa", "ur", "he-IL"})
        EXPECT_EQ(readingDirection(language), Qt::RightToLeft) << language;
    for (const char* language : {"en", "de", "ja", "pt-BR", "zh_CN", ""})
        EXPECT_EQ(readingDirection(language), Qt::LeftToRight) << language;
}

class ApplicationSetupTest : public testing::Test {
  protected:
    void setUp() { setup.emplace("/I.app/Contents/MacOS/Installer", "", bundle, log); }

    test::FakeBundle bundle;
    test::RecordingLog log;
    std::optional<ApplicationSetup> setup;
};

TEST_F(ApplicationSetupTest, NamesTheApplicationAfterTheProduct) {
    bundle.information = {{"CFBundleName", "Tonewright 2 Installer"},
                          {"CFBundleIdentifier", "com.quarrytone.installer.tonewright2"}};
    setUp();
    EXPECT_EQ(fromQt(QApplication::applicationName()), "Tonewright 2 Installer");
    EXPECT_EQ(fromQt(QGuiApplication::desktopFileName()), "com.quarrytone.installer.tonewright2");
    EXPECT_TRUE(QApplication::quitOnLastWindowClosed());
}

TEST_F(ApplicationSetupTest, NamesTheApplicationAfterItsExecutableOtherwise) {
    setUp();
    EXPECT_EQ(fromQt(QApplication::applicationName()), "Installer");
}

TEST_F(ApplicationSetupTest, ShowsThePictureOfTheBundle) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("AppIcon.png"));
    QImage picture(16, 16, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(path));
    bundle.resources["AppIcon.png"] = fromQt(path);
    setUp();
    EXPECT_EQ(QApplication::windowIcon().pixmap(16, 16).toImage().pixelColor(8, 8), Qt::red);
}

TEST_F(ApplicationSetupTest, HasNoPictureWithoutOneInTheBundle) {
    setUp();
    EXPECT_TRUE(QApplication::windowIcon().isNull());
}

TEST_F(ApplicationSetupTest, TheToolkitSpeaksTheLanguageOfTheBundle) {
    bundle.language = "de";
    setUp();
    const QDialogButtonBox box(QDialogButtonBox::Cancel);
    EXPECT_EQ(fromQt(box.button(QDialogButtonBox::Cancel)->text()), "Abbrechen");
}

TEST_F(ApplicationSetupTest, RunsFromRightToLeftWhereTheLanguageDoes) {
    // Not a language that the toolkit's own texts are in.
    bundle.language = "ur";
    setUp();
    EXPECT_EQ(QApplication::layoutDirection(), Qt::RightToLeft);
}

TEST_F(ApplicationSetupTest, LeavesNumbersInFilesAlone) {
    ::setenv("LC_ALL", "C.UTF-8", 1);
    setUp();
    ::unsetenv("LC_ALL");
    EXPECT_STREQ(std::setlocale(LC_MESSAGES, nullptr), "C.UTF-8");
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

TEST_F(ApplicationSetupTest, StartsWithoutAWordInPoorSurroundings) {
    ::unsetenv("XDG_RUNTIME_DIR");
    ::setenv("LC_ALL", "C", 1);
    testing::internal::CaptureStderr();
    setUp();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(log.lines, ElementsAre());
    ::unsetenv("LC_ALL");
}

}  // namespace
