#include "qt/controls/ListRowDelegate.h"

#include <QApplication>
#include <QListView>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "qt/controls/RowHeight.h"
#include "qt/theme/ReadableColor.h"
#include "qt/theme/TextSizes.h"

namespace installer {

namespace {

constexpr int space = 8;       // above and below a row's contents
constexpr int leastSpace = 2;  // where another row fits in then
constexpr int gap = 4;         // before and after its texts

QFont detailFont(const QFont& font) {
    return fontOfSize(TextSize::small, font);
}

/// The view passes on no release of a second click that comes fast: its press counts.
bool isClick(const QEvent& event) {
    return (event.type() == QEvent::MouseButtonRelease ||
            event.type() == QEvent::MouseButtonDblClick) &&
           static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton;
}

QPalette::ColorGroup colorGroup(QStyle::State state) {
    if (!state.testFlag(QStyle::State_Enabled)) return QPalette::Disabled;
    return state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

/// Texts of a list may be paths, which read from left to right in every language.
void drawLine(QPainter& painter, const QRect& area, const QFont& font, const QColor& color,
              Qt::LayoutDirection direction, const QString& text) {
    painter.setFont(font);
    painter.setPen(color);
    const auto side = QStyle::visualAlignment(direction, Qt::AlignLeft | Qt::AlignVCenter);
    painter.drawText(area, static_cast<int>(side) | Qt::TextSingleLine,
                     QFontMetrics(font).elidedText(text, Qt::ElideMiddle, area.width()));
}

}  // namespace

void ListRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    QStyleOptionViewItem item(option);
    initStyleOption(&item, index);
    const QStyle& style = item.widget ? *item.widget->style() : *QApplication::style();
    const QRect area = style.subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget)
                           .adjusted(gap, 0, -gap, 0);
    const QString title = item.text;
    const QString detail = index.data(detailRole).toString();
    item.text.clear();
    style.drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    const bool isSelected = item.state.testFlag(QStyle::State_Selected);
    const auto group = colorGroup(item.state);
    const QColor text =
        item.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    const QColor ground =
        item.palette.color(group, isSelected ? QPalette::Highlight : QPalette::Base);
    const QFont small = detailFont(item.font);
    const int titleHeight = QFontMetrics(item.font).height();
    const int detailHeight = detail.isEmpty() ? 0 : QFontMetrics(small).height();

    painter->save();
    painter->setLayoutDirection(Qt::LeftToRight);
    QRect line = area;
    line.setTop(area.center().y() - (titleHeight + detailHeight) / 2);
    line.setHeight(titleHeight);
    drawLine(*painter, line, item.font, text, item.direction, title);
    line.translate(0, titleHeight);
    line.setHeight(detailHeight);
    drawLine(*painter, line, small, isSelected ? text : quietColor(text, ground), item.direction,
             detail);
    painter->restore();
}

QSize ListRowDelegate::sizeHint(const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
    QStyleOptionViewItem item(option);
    initStyleOption(&item, index);
    const bool hasDetail = !index.data(detailRole).toString().isEmpty();
    const int texts = QFontMetrics(item.font).height() +
                      (hasDetail ? QFontMetrics(detailFont(item.font)).height() : 0);
    const bool hasIcon = !item.icon.isNull();
    const int icon = hasIcon ? item.decorationSize.height() : 0;
    const int contents = std::max(texts, icon);
    const auto* list = qobject_cast<const QListView*>(item.widget);
    const int area = list == nullptr ? 0 : list->viewport()->height();
    return {QStyledItemDelegate::sizeHint(option, index).width(),
            rowHeightThatFits(area, index.model()->rowCount(), contents + 2 * leastSpace,
                              contents + 2 * space)};
}

bool ListRowDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                  const QStyleOptionViewItem& option, const QModelIndex& index) {
    constexpr auto tickable = Qt::ItemIsUserCheckable | Qt::ItemIsEnabled;
    const bool canBeTicked =
        (index.flags() & tickable) == tickable && index.data(Qt::CheckStateRole).isValid();
    if (!canBeTicked || !isClick(*event)) {
        return QStyledItemDelegate::editorEvent(event, model, option, index);
    }
    const bool isTicked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    return model->setData(index, isTicked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

}  // namespace installer
