#include "qt/values/RowIcon.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>

#include "qt/values/QtText.h"

namespace installer {

namespace {

// Drawn for fine screens, and made smaller for others.
constexpr int finest = 3;

QImage canvas(int side) {
    QImage image(side * finest, side * finest, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QIcon iconOf(QImage image) {
    image.setDevicePixelRatio(finest);
    return QPixmap::fromImage(image);
}

}  // namespace

QIcon rowIcon(const std::string& path, int side) {
    if (path.empty()) return {};
    QImage image = canvas(side);
    QImage picture = QIcon(toQt(path))
                         .pixmap(image.size())
                         .toImage()
                         .scaled(image.size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (picture.isNull()) return {};
    picture.setDevicePixelRatio(1);
    QPainter painter(&image);
    painter.drawImage((image.width() - picture.width()) / 2,
                      (image.height() - picture.height()) / 2, picture);
    painter.end();
    return iconOf(image);
}

QIcon placeholderIcon(int side) {
    QImage image = canvas(side);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double unit = image.width() / 16.0;
    painter.setPen(QPen(Qt::gray, unit * 0.75));
    painter.drawRoundedRect(QRectF(unit, unit, 14 * unit, 14 * unit), 3 * unit, 3 * unit);
    painter.drawEllipse(QPointF(8 * unit, 8 * unit), 3 * unit, 3 * unit);
    painter.end();
    return iconOf(image);
}

}  // namespace installer
