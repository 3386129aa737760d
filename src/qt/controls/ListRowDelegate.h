#pragma once

#include <QStyledItemDelegate>

namespace installer {

/// Paints a row of a list: first what the style paints before a text, then the title. Below the
/// title it paints the detail in a quieter colour, shortened in its middle. A click anywhere in a
/// row that can be ticked ticks or unticks it. Rows are a little higher or lower than they would be
/// where that keeps the list from cutting the last visible one.
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
