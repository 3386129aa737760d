#include "qt/values/StyledTextDocument.h"

#include <QFontDatabase>
#include <QTextCursor>
#include <QTextDocument>
#include <QWidget>

#include "qt/theme/ReadableColor.h"
#include "qt/values/QtText.h"

namespace installer {

namespace {

Qt::Alignment alignmentOf(Paragraph::Alignment alignment) {
    switch (alignment) {
        case Paragraph::Alignment::left:
            return Qt::AlignLeft | Qt::AlignAbsolute;
        case Paragraph::Alignment::right:
            return Qt::AlignRight | Qt::AlignAbsolute;
        case Paragraph::Alignment::center:
            return Qt::AlignHCenter;
        case Paragraph::Alignment::justified:
            return Qt::AlignJustify;
        case Paragraph::Alignment::natural:
            break;
    }
    return Qt::AlignLeading;
}

QTextBlockFormat blockFormat(const Paragraph& paragraph, const TextLook& look) {
    QTextBlockFormat format;
    format.setAlignment(alignmentOf(paragraph.alignment));
    format.setLayoutDirection(paragraph.rightToLeft ? Qt::RightToLeft : look.direction);
    format.setLeftMargin(paragraph.leftIndent * look.pixelsPerPoint);
    format.setRightMargin(paragraph.rightIndent * look.pixelsPerPoint);
    format.setTextIndent(paragraph.firstLineIndent * look.pixelsPerPoint);
    format.setTopMargin(paragraph.spaceBefore * look.pixelsPerPoint);
    format.setBottomMargin(paragraph.spaceAfter * look.pixelsPerPoint);
    format.setLineHeight(look.lineHeight, QTextBlockFormat::ProportionalHeight);
    return format;
}

QTextCharFormat charFormat(const TextStyle& style, const TextLook& look) {
    QTextCharFormat format;
    const QString family = toQt(style.fontFamily);
    // The substitute that would be found for a missing font seldom goes with the window's own.
    if (!family.isEmpty() && QFontDatabase::hasFamily(family)) format.setFontFamilies({family});
    if (style.pointSize > 0) format.setFontPointSize(style.pointSize);
    if (style.bold) format.setFontWeight(QFont::Bold);
    if (style.italic) format.setFontItalic(true);
    if (style.underline) format.setFontUnderline(true);
    if (style.strikethrough) format.setFontStrikeOut(true);
    if (style.color && *style.color != Color{}) {
        const QColor color(style.color->red, style.color->green, style.color->blue);
        format.setForeground(readableColor(color, look.ground));
    }
    if (!style.link.empty()) {
        format.setAnchor(true);
        format.setAnchorHref(toQt(style.link));
        format.setFontUnderline(true);
        format.setForeground(readableColor(look.link, look.ground));
    }
    return format;
}

QString lineBroken(const std::string& text) {
    return toQt(text).replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
}

}  // namespace

TextLook TextLook::of(const QWidget& widget) {
    const QPalette& palette = widget.palette();
    const QColor base = palette.color(QPalette::Base);
    return {.font = widget.font(),
            .ground = base.alpha() == 0 ? palette.color(QPalette::Window) : base,
            .link = palette.color(QPalette::Link),
            .pixelsPerPoint = widget.logicalDpiX() / 72.0,
            .direction = widget.layoutDirection()};
}

void setStyledText(QTextDocument& document, const StyledText& text, const TextLook& look) {
    document.clear();
    document.setUndoRedoEnabled(false);
    document.setDefaultFont(look.font);
    QTextCursor cursor(&document);
    // Without the block, every insertion is laid out before the next one.
    cursor.beginEditBlock();
    bool isFirst = true;
    for (const Paragraph& paragraph : text.paragraphs) {
        if (!isFirst) cursor.insertBlock();
        isFirst = false;
        cursor.setBlockFormat(blockFormat(paragraph, look));
        // An empty paragraph is as high as its own style, not as the one before it.
        cursor.setBlockCharFormat({});
        for (const TextRun& run : paragraph.runs) {
            cursor.insertText(lineBroken(run.text), charFormat(run.style, look));
        }
    }
    cursor.endEditBlock();
}

}  // namespace installer
