#include "qt/theme/ReadableColor.h"

#include <algorithm>
#include <cmath>

namespace installer {

namespace {

constexpr double leastContrast = 4.5;
constexpr double strongContrast = 7;

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

QColor mixed(const QColor& one, const QColor& other, double share) {
    const auto channel = [share](int from, int to) {
        return static_cast<int>(std::lround(from + (to - from) * share));
    };
    return {channel(one.red(), other.red()), channel(one.green(), other.green()),
            channel(one.blue(), other.blue())};
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor colorWithContrast(double least, const QColor& wanted, const QColor& ground) {
    const QColor away = contrast(Qt::black, ground) > contrast(Qt::white, ground)  //
                            ? QColor(Qt::black)
                            : QColor(Qt::white);
    constexpr int steps = 20;
    for (int step = 0; step < steps; ++step) {
        const QColor color = mixed(wanted, away, static_cast<double>(step) / steps);
        if (contrast(color, ground) >= least) return color;
    }
    return away;
}

QColor readableColor(const QColor& wanted, const QColor& ground) {
    return colorWithContrast(leastContrast, wanted, ground);
}

QColor counterpart(const QColor& onPaper, const QColor& ground) {
    const double least =
        contrast(onPaper, Qt::white) >= strongContrast ? strongContrast : leastContrast;
    const bool isPaper = contrast(Qt::black, ground) > contrast(Qt::white, ground);
    if (isPaper) return colorWithContrast(least, onPaper, ground);
    const QColor turned = QColor::fromHslF(std::max(onPaper.hslHueF(), 0.0F),
                                           onPaper.hslSaturationF(), 1 - onPaper.lightnessF());
    return colorWithContrast(least, turned, ground);
}

QColor quietColor(const QColor& text, const QColor& ground) {
    constexpr double shareOfGround = 0.4;
    return readableColor(mixed(text, ground, shareOfGround), ground);
}

QColor hairlineColor(const QColor& text, const QColor& ground) {
    constexpr double shareOfGround = 0.75;
    return mixed(text, ground, shareOfGround);
}

}  // namespace installer
