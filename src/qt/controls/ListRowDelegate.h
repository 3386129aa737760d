#pragma once

#include <QStyledItemDelegate>

namespace installer {

/// Paints a row of a list: what the style paints before a text, then the title and below it,
/// quieter and shortened in its middle, the detail. A click anywhere in a row that can be ticked
/// ticks or unticks it.
class ListRowDelegate final : public QStyledItemDelegate {
  public:
    static constexpr int detailRole = Qt::UserRole;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;

  protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
};

}  // namespace installer
