#include "qt/theme/WindowStyle.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

#include "qt/theme/ReadableColor.h"

namespace installer {

namespace {

constexpr QLatin1String toolkitsOwn("fusion");
constexpr int besideButtonText = 8;
// The toolkit's gradients take a part of it away.
constexpr double markedContrast = 6;

void drawFrame(QPainter& painter, const QStyleOption& option) {
    QColor color = option.palette.color(QPalette::Text);
    color.setAlphaF(0.55F);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(color);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    painter.restore();
}

}  // namespace

WindowStyle::WindowStyle() : QProxyStyle(toolkitsOwn) {}

void WindowStyle::setApplicationStyle() {
    QStyle* style = new WindowStyle;
    style->setParent(qApp);
    QApplication::setStyle(style);
}

void WindowStyle::replaceToolkitsOwn() {
    if (QApplication::style()->name() == toolkitsOwn) setApplicationStyle();
}

void WindowStyle::polish(QPalette& palette) {
    QProxyStyle::polish(palette);
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(
            group, QPalette::Highlight,
            colorWithContrast(markedContrast, palette.color(group, QPalette::Highlight),
                              palette.color(group, QPalette::HighlightedText)));
    }
}

void WindowStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
    if (element != CE_ProgressBarLabel || bar == nullptr || bar->direction != Qt::RightToLeft) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    // The toolkit takes the bar's filled part for the left one, and writes white on white.
    QStyleOptionProgressBar mirrored(*bar);
    mirrored.progress = bar->maximum - (bar->progress - bar->minimum);
    QProxyStyle::drawControl(element, &mirrored, painter, widget);
}

void WindowStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_IndicatorCheckBox || element == PE_IndicatorItemViewItemCheck) {
        drawFrame(*painter, *option);
    }
}

void WindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                     QPainter* painter, const QWidget* widget) const {
    const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(option);
    if (control != CC_ToolButton || button == nullptr) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    QStyleOptionToolButton withoutArrow(*button);
    withoutArrow.features.setFlag(QStyleOptionToolButton::HasMenu, false);
    QProxyStyle::drawComplexControl(control, &withoutArrow, painter, widget);
}

QSize WindowStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                    const QSize& contents, const QWidget* widget) const {
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    return type == CT_PushButton ? size + QSize(2 * besideButtonText, 0) : size;
}

}  // namespace installer
