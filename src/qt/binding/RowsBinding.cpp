#include <QIcon>
#include <QListWidget>
#include <QPointer>
#include <QSignalBlocker>

#include "ports/window/DescriptionProperties.h"
#include "qt/binding/Binding.h"
#include "qt/binding/ControlText.h"
#include "qt/controls/ListRowDelegate.h"
#include "qt/controls/RowHeight.h"
#include "qt/controls/TickableRows.h"
#include "qt/dressing/BehindQuestion.h"
#include "qt/values/RowIcon.h"
#include "qt/values/VisibleText.h"

namespace installer {

namespace {

constexpr int iconPathRole = ListRowDelegate::detailRole + 1;

/// Rows of one list have icons of one size, those without a picture too.
void showIcon(QListWidgetItem& item, const Image& icon, bool needsIcon) {
    if (item.data(iconPathRole) == QVariant(toQt(icon.path))) return;
    item.setData(iconPathRole, toQt(icon.path));
    const int side = item.listWidget()->iconSize().width();
    const QIcon picture = side > 0 ? rowIcon(icon.path, side) : QIcon();
    item.setIcon(picture.isNull() && needsIcon ? placeholderIcon(side) : picture);
}

void showRow(QListWidgetItem& item, const ListRow& row, bool isCheckable) {
    const QString detail = withVisibleOverrides(toQt(row.detail));
    item.setText(withVisibleOverrides(toQt(row.title)));
    item.setData(ListRowDelegate::detailRole, detail);
    item.setData(Qt::AccessibleDescriptionRole, detail);
    item.setToolTip(plainToolTip(row.detail.empty() ? row.title : row.detail));
    showIcon(item, row.icon, isCheckable && item.listWidget()->iconSize().width() > 0);
    if (!isCheckable) return;
    item.setFlags(item.flags() | Qt::ItemIsUserCheckable);
    item.setCheckState(row.checked ? Qt::Checked : Qt::Unchecked);
}

/// Rows that stay keep their item. So the list keeps its scroll position, its selection and the
/// item that the user is pressing.
void showRows(QListWidget& list, const std::vector<ListRow>& rows, bool isCheckable) {
    const QSignalBlocker onlyTheUsersChangesCount(list);
    const int count = static_cast<int>(rows.size());
    while (list.count() > count) delete list.takeItem(list.count() - 1);
    while (list.count() < count) new QListWidgetItem(&list);
    for (int row = 0; row < count; ++row) {
        showRow(*list.item(row), rows[static_cast<std::size_t>(row)], isCheckable);
    }
}

}  // namespace

ShowValue rowsBinding(QObject& control, const BindingContext& context) {
    auto* list = qobject_cast<QListWidget*>(&control);
    if (!list) return {};
    const bool isCheckable = list->property(checkableProperty).toBool();
    list->setItemDelegate(new ListRowDelegate(list));
    list->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    new RowsFollowHeight(*list);
    TickableRows::followFocus(*list);
    const auto show = [list, isCheckable](const PropertyValue& value) {
        const auto* rows = std::get_if<std::vector<ListRow>>(&value);
        showRows(*list, rows ? *rows : std::vector<ListRow>{}, isCheckable);
    };
    QObject::connect(list, &QListWidget::itemChanged, &context.lifetime,
                     [list, show, property = context.property, &owner = context.owner,
                      lifetime = QPointer<QObject>(&context.lifetime)](QListWidgetItem* item) {
                         // The owner may take the row away.
                         const int row = list->row(item);
                         if (!isBehindQuestion(*list)) {
                             owner.setRowChecked(property, static_cast<std::size_t>(row),
                                                 item->checkState() == Qt::Checked);
                         }
                         if (!lifetime) return;
                         show(owner.valueForProperty(property));
                         if (row < list->count()) TickableRows::announce(*list, row);
                     });
    return show;
}

}  // namespace installer
