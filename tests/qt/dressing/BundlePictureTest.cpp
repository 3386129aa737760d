#include <QImage>
#include <QLabel>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "qt/dressing/BundlePicture.h"
#include "qt/values/QtText.h"
#include "tests/support/FakePlatform.h"

namespace {

using namespace installer;
using namespace installer::test;

class BundlePictureTest : public testing::Test {
  protected:
    QTemporaryDir folder;
    FakeBundle bundle;
    QWidget window;
    QLabel label{&window};

    void add(const char* name, QColor color) {
        QImage image(16, 16, QImage::Format_RGB32);
        image.fill(color);
        const QString path = folder.filePath(name);
        ASSERT_TRUE(image.save(path));
        bundle.resources[name] = fromQt(path);
    }

    void turn(QColor ground, QColor text) {
        QPalette palette;
        palette.setColor(QPalette::Window, ground);
        palette.setColor(QPalette::WindowText, text);
        label.setPalette(palette);
    }

    [[nodiscard]] QColor shown() const {
        return label.pixmap(Qt::ReturnByValue).toImage().pixelColor(8, 8);
    }
};

TEST_F(BundlePictureTest, ALabelWithoutAPictureIsHidden) {
    new BundlePicture(label, "Sidebar", bundle);
    EXPECT_TRUE(label.isHidden());
}

TEST_F(BundlePictureTest, FollowsLightAndDark) {
    add("Sidebar.png", Qt::red);
    add("Sidebar-Dark.png", Qt::blue);
    new BundlePicture(label, "Sidebar", bundle);
    EXPECT_FALSE(label.isHidden());
    EXPECT_EQ(shown(), QColor(Qt::red));
    turn(Qt::black, Qt::white);
    EXPECT_EQ(shown(), QColor(Qt::blue));
    turn(Qt::white, Qt::black);
    EXPECT_EQ(shown(), QColor(Qt::red));
}

TEST_F(BundlePictureTest, TheOnlyPictureIsShownInADarkWindowToo) {
    add("Sidebar.png", Qt::red);
    new BundlePicture(label, "Sidebar", bundle);
    turn(Qt::black, Qt::white);
    EXPECT_EQ(shown(), QColor(Qt::red));
}

}  // namespace
