#include <QImage>
#include <QPixmap>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "qt/values/QtText.h"
#include "qt/values/RowIcon.h"

namespace {

using namespace installer;

/// The part of the icon that is not transparent.
QRect painted(const QIcon& icon, int side) {
    const QImage image = icon.pixmap(QSize(side, side)).toImage();
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 40) found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

TEST(RowIcon, PicturesOfEverySizeFillTheSameSquare) {
    const QTemporaryDir folder;
    for (const int side : {8, 16, 48, 512}) {
        QImage image(side, side, QImage::Format_RGB32);
        image.fill(Qt::red);
        const QString path = folder.filePath("icon.png");
        ASSERT_TRUE(image.save(path));
        EXPECT_EQ(painted(rowIcon(fromQt(path), 32), 32), QRect(0, 0, 32, 32)) << side;
    }
}

TEST(RowIcon, AWidePictureKeepsItsProportionsInTheMiddle) {
    const QTemporaryDir folder;
    QImage image(64, 32, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QString path = folder.filePath("icon.png");
    ASSERT_TRUE(image.save(path));
    EXPECT_EQ(painted(rowIcon(fromQt(path), 32), 32), QRect(0, 8, 32, 16));
}

TEST(RowIcon, AFileThatIsNoPictureGivesNone) {
    EXPECT_TRUE(rowIcon("", 32).isNull());
    EXPECT_TRUE(rowIcon("/nowhere.png", 32).isNull());
}

TEST(RowIcon, ThePlaceholderIsAsLargeAsAPicture) {
    const QRect place = painted(placeholderIcon(32), 32);
    EXPECT_GE(place.width(), 26);
    EXPECT_EQ(place.width(), place.height());
}

}  // namespace
