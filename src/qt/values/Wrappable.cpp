#include "qt/values/Wrappable.h"

#include <QTextBoundaryFinder>

namespace installer {

QString wrappable(const QString& text) {
    constexpr qsizetype longestPiece = 40;
    constexpr QChar breakHere(0x200B);
    QString result;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    qsizetype inPiece = 0;
    for (qsizetype start = 0; start < text.size();) {
        const qsizetype next = characters.toNextBoundary();
        const qsizetype end = next < 0 ? text.size() : next;
        const QChar last = text[end - 1];
        result += QStringView(text).sliced(start, end - start);
        start = end;
        inPiece = last.isSpace() ? 0 : inPiece + 1;
        if (start == text.size() || (last != u'/' && inPiece < longestPiece)) continue;
        result += breakHere;
        inPiece = 0;
    }
    return result;
}

}  // namespace installer
