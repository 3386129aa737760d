#include "qt/controls/RowHeight.h"

#include <QListView>
#include <QResizeEvent>
#include <QTimer>
#include <algorithm>

namespace installer {

int rowHeightThatFits(int area, int rows, int least, int natural) {
    if (area <= 0 || rows * natural <= area) return natural;
    int shown = std::clamp((area + natural - 1) / natural, 1, rows);
    if (shown > 1 && area / shown < least) --shown;
    return std::max(least, area / shown);
}

RowsFollowHeight::RowsFollowHeight(QListView& list) : QObject(&list), list_(list) {
    list.viewport()->installEventFilter(this);
}

bool RowsFollowHeight::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() != QEvent::Resize) return false;
    const auto& resize = static_cast<const QResizeEvent&>(*event);
    if (resize.size().height() != resize.oldSize().height()) {
        // The list has not taken over its new size yet.
        QTimer::singleShot(0, this, [this] { list_.doItemsLayout(); });
    }
    return false;
}

}  // namespace installer
