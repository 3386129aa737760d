#pragma once

#include <QProxyStyle>

namespace installer {

/// The toolkit's own style, which is used where the desktop brings none, with two faults mended:
/// on a dark ground the frame of an empty check box could not be seen, and buttons with long
/// texts had next to no room beside them.
class WindowStyle final : public QProxyStyle {
  public:
    WindowStyle();

    static void setApplicationStyle();
    /// Gives the application this style where it has the toolkit's own.
    static void replaceToolkitsOwn();

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
