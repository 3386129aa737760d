#include "qt/theme/ReadableColor.h"

#include <algorithm>
#include <cmath>

namespace installer {

namespace {

constexpr double leastContrast = 4.5;

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

QColor readableColor(const QColor& wanted, const QColor& ground) {
    const QColor away = contrast(Qt::black, ground) > contrast(Qt::white, ground)  //
                            ? QColor(Qt::black)
                            : QColor(Qt::white);
    constexpr int steps = 20;
    for (int step = 0; step < steps; ++step) {
        const QColor color = mixed(wanted, away, static_cast<double>(step) / steps);
        if (contrast(color, ground) >= leastContrast) return color;
    }
    return away;
}

QColor quietColor(const QColor& text, const QColor& ground) {
    constexpr double shareOfGround = 0.4;
    return readableColor(mixed(text, ground, shareOfGround), ground);
}

}  // namespace installer
