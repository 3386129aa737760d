#pragma once

#include <QColor>
#include <QFont>

#include "foundation/text/StyledText.h"

class QTextDocument;
class QWidget;

namespace installer {

/// How a text looks where it says nothing of its own.
struct TextLook {
    QFont font;
    QColor ground;
    QColor link;
    double pixelsPerPoint = 1;
    Qt::LayoutDirection direction = Qt::LeftToRight;
    int lineHeight = 100;  ///< in hundredths of what the font asks for

    [[nodiscard]] static TextLook of(const QWidget& widget);
};

/// Replaces what the document holds. Black text is left to the window's own colour, and other
/// colours are changed as far as they could not be read on the ground; a font that this machine
/// does not have is left to the window's own.
void setStyledText(QTextDocument& document, const StyledText& text, const TextLook& look);

}  // namespace installer
