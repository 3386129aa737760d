#include <QIcon>
#include <QListWidget>
#include <QPointer>
#include <QSignalBlocker>

#include "qt/binding/Binding.h"
#include "qt/binding/ControlText.h"
#include "qt/controls/ListRowDelegate.h"

namespace installer {

namespace {

constexpr int iconPathRole = ListRowDelegate::detailRole + 1;

/// In a list with this property each row has a check box.
constexpr const char* checkableProperty = "checkable";

void showRow(QListWidgetItem& item, const ListRow& row, bool isCheckable) {
    item.setText(toQt(row.title));
    item.setData(ListRowDelegate::detailRole, toQt(row.detail));
    item.setData(Qt::AccessibleDescriptionRole, toQt(row.detail));
    item.setToolTip(plainToolTip(row.detail.empty() ? row.title : row.detail));
    if (item.data(iconPathRole) != QVariant(toQt(row.icon.path))) {
        item.setData(iconPathRole, toQt(row.icon.path));
        item.setIcon(row.icon.path.empty() ? QIcon() : QIcon(toQt(row.icon.path)));
    }
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
    const auto show = [list, isCheckable](const PropertyValue& value) {
        const auto* rows = std::get_if<std::vector<ListRow>>(&value);
        showRows(*list, rows ? *rows : std::vector<ListRow>{}, isCheckable);
    };
    QObject::connect(list, &QListWidget::itemChanged, &context.lifetime,
                     [list, show, property = context.property, &owner = context.owner,
                      lifetime = QPointer<QObject>(&context.lifetime)](QListWidgetItem* item) {
                         owner.setRowChecked(property, static_cast<std::size_t>(list->row(item)),
                                             item->checkState() == Qt::Checked);
                         if (lifetime) show(owner.valueForProperty(property));
                     });
    return show;
}

}  // namespace installer
