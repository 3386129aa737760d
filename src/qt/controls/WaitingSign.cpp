#include "qt/controls/WaitingSign.h"

#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <cmath>

#include "qt/theme/ReadableColor.h"

namespace installer {

namespace {

constexpr int millisecondsPerTurn = 80;
constexpr int turnsPerRound = 24;
constexpr int dots = 3;
// A weak dot can still be seen.
constexpr double strongestContrast = 8;
const QColor done(0x1f, 0x8f, 0x4e);

/// How strong a dot is, from 0.75 to 1: a slow wave runs through the three.
double strength(int dot, int turn) {
    constexpr double pi = 3.14159265358979;
    const double phase = 2 * pi * (turn / double(turnsPerRound) - dot / double(2 * dots));
    return 0.75 + 0.25 * std::pow(std::max(0.0, std::sin(phase)), 2);
}

void drawDots(QPainter& painter, double side, QColor color, int turn) {
    painter.setPen(Qt::NoPen);
    for (int dot = 0; dot < dots; ++dot) {
        color.setAlphaF(static_cast<float>(strength(dot, turn)));
        painter.setBrush(color);
        painter.drawEllipse(QPointF(side * (0.2 + 0.3 * dot), side / 2), side / 10, side / 10);
    }
}

void drawCheck(QPainter& painter, double side) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(done);
    painter.drawEllipse(QRectF(side * 0.08, side * 0.08, side * 0.84, side * 0.84));
    painter.setPen(QPen(Qt::white, side * 0.09, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF points[] = {QPointF(0.3, 0.52) * side, QPointF(0.44, 0.66) * side,
                              QPointF(0.7, 0.36) * side};
    painter.drawPolyline(points, 3);
}

}  // namespace

WaitingSign::WaitingSign(QLabel& label) : QObject(&label), label_(label) {
    turns_.setInterval(millisecondsPerTurn);
    connect(&turns_, &QTimer::timeout, this, [this] {
        if (!label_.isVisible()) return;
        turn_ = (turn_ + 1) % turnsPerRound;
        draw();
    });
    draw();
}

void WaitingSign::setWaiting(bool waiting) {
    waiting_ = waiting;
    turn_ = 0;
    if (waiting) {
        turns_.start();
    } else {
        turns_.stop();
    }
    draw();
}

void WaitingSign::draw() {
    const double ratio = label_.devicePixelRatioF();
    const QSize size = label_.minimumSize();
    QPixmap picture(size * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    if (waiting_) {
        const QPalette palette = label_.palette();
        const QColor color = colorWithContrast(
            strongestContrast, palette.color(QPalette::Highlight), palette.color(QPalette::Window));
        drawDots(painter, size.width(), color, turn_);
    } else {
        drawCheck(painter, size.width());
    }
    painter.end();
    label_.setPixmap(picture);
}

}  // namespace installer
