#pragma once

#include <QProxyStyle>

namespace installer {

/// The toolkit's own style with corrections. The toolkit uses it on desktops without a style.
/// Corrected are the frame of an empty check box, invisible on a dark background, the margins of
/// buttons with long texts, the percentage of a progress bar from right to left, and the contrast
/// of marked texts.
class WindowStyle final : public QProxyStyle {
  public:
    WindowStyle();

    static void setApplicationStyle();
    /// Sets this style on the application if it uses the toolkit's own.
    static void replaceToolkitsOwn();

    using QProxyStyle::polish;
    void polish(QPalette& palette) override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    /// A button with a menu shows its own sign alone, without a small arrow in its corner.
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option,
                                         const QSize& contents,
                                         const QWidget* widget) const override;
};

}  // namespace installer
