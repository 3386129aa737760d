#include "qt/values/Picture.h"

#include <QFileInfo>
#include <QImageReader>
#include <QLabel>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include "qt/theme/ColorScheme.h"
#include "qt/values/QtText.h"

namespace installer {

namespace {

/// The picture in the middle of a transparent ground that has the proportions of the area.
QImage fitted(const QImage& picture, QSize area) {
    const QSize extent = area.scaled(picture.size(), Qt::KeepAspectRatioByExpanding);
    if (extent == picture.size()) return picture;
    QImage ground(extent, QImage::Format_ARGB32_Premultiplied);
    ground.fill(Qt::transparent);
    QPainter painter(&ground);
    painter.drawImage(
        QPoint((extent.width() - picture.width()) / 2, (extent.height() - picture.height()) / 2),
        picture);
    return ground;
}

}  // namespace

void showPicture(QLabel& label, const Image& image) {
    const QImage picture = image.path.empty() ? QImage() : QImageReader(toQt(image.path)).read();
    if (picture.isNull()) {
        label.setPixmap(QPixmap());
        return;
    }
    const QSize area = label.minimumSize();
    const bool isFixed = !area.isEmpty() && area == label.maximumSize();
    // The label scales the whole picture for the screen that it is on whenever it paints.
    label.setScaledContents(isFixed);
    label.setPixmap(QPixmap::fromImage(isFixed ? fitted(picture, area) : picture));
}

Image pictureFor(const QPalette& palette, const Image& image) {
    if (image.path.empty() || !isDark(palette)) return image;
    const QFileInfo file(toQt(image.path));
    const QString dark =
        file.path() + u'/' + file.completeBaseName() + QStringLiteral("-Dark.") + file.suffix();
    return QFileInfo::exists(dark) ? Image{fromQt(dark)} : image;
}

}  // namespace installer
