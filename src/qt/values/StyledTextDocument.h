#pragma once

#include <QColor>
#include <QFont>

#include "foundation/text/StyledText.h"

class QTextDocument;
class QWidget;

namespace installer {

/// The look of a text that has no style of its own.
struct TextLook {
    QFont font;
    QColor ground;
    QColor link;
    double pixelsPerPoint = 1;
    Qt::LayoutDirection direction = Qt::LeftToRight;
    int lineHeight = 100;  ///< in hundredths of what the font asks for

    [[nodiscard]] static TextLook of(const QWidget& widget);

    friend bool operator==(const TextLook&, const TextLook&) = default;
};

/// Replaces the document's contents. Black text gets the window's own colour. Other colours are
/// changed if they cannot be read on the background. A font that this machine does not have is
/// replaced by the window's own.
void setStyledText(QTextDocument& document, const StyledText& text, const TextLook& look);

}  // namespace installer
