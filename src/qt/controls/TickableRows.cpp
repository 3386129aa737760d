#include "qt/controls/TickableRows.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QListWidget>
#include <QTimer>

#include "ports/window/DescriptionProperties.h"

namespace installer {

namespace {

/// One row of the list, by its place. It is not valid while the list has fewer rows.
class TickableRow final : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    TickableRow(QListWidget& list, int row) : list_(list), row_(row) {}

    [[nodiscard]] bool isValid() const override { return item() != nullptr; }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QWindow* window() const override { return list_.window()->windowHandle(); }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::CheckBox; }

    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&list_);
    }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override {
        return nullptr;
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override {
        return -1;
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        if (!isValid()) return {};
        if (kind == QAccessible::Name) return item()->text();
        if (kind != QAccessible::Description) return {};
        return item()->data(Qt::AccessibleDescriptionRole).toString();
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}

    [[nodiscard]] QRect rect() const override {
        if (!isValid()) return {};
        const QRect area = list_.visualItemRect(item());
        return {list_.viewport()->mapToGlobal(area.topLeft()), area.size()};
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        if (!isValid()) return state;
        state.checkable = true;
        state.checked = item()->checkState() == Qt::Checked;
        state.disabled = !list_.isEnabled();
        state.focusable = true;
        state.focused = list_.hasFocus() && list_.currentRow() == row_;
        state.invisible = !list_.isVisible();
        const QRect area = list_.visualItemRect(item());
        state.offscreen = !area.intersects(list_.viewport()->rect());
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type != QAccessible::ActionInterface) return nullptr;
        return static_cast<QAccessibleActionInterface*>(this);
    }
    [[nodiscard]] QStringList actionNames() const override { return {toggleAction()}; }
    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*action*/) const override {
        return {};
    }
    void doAction(const QString& action) override {
        if (action != toggleAction() || !isValid() || !list_.isEnabled()) return;
        const bool isTicked = item()->checkState() == Qt::Checked;
        item()->setCheckState(isTicked ? Qt::Unchecked : Qt::Checked);
    }

  private:
    [[nodiscard]] QListWidgetItem* item() const { return list_.item(row_); }

    QListWidget& list_;
    int row_;
};

class ListOfTickableRows final : public QAccessibleWidget {
  public:
    explicit ListOfTickableRows(QListWidget& list)
        : QAccessibleWidget(&list, QAccessible::List), list_(list) {}
    ListOfTickableRows(const ListOfTickableRows&) = delete;
    ListOfTickableRows& operator=(const ListOfTickableRows&) = delete;

    ~ListOfTickableRows() override {
        // By their numbers: at the program's end the toolkit may have deleted them already.
        for (const Row& row : rows_) QAccessible::deleteAccessibleInterface(row.number);
    }

    [[nodiscard]] int childCount() const override { return list_.count(); }

    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) return nullptr;
        if (!rows_.contains(index)) {
            Row& row = rows_[index];
            row.made = new TickableRow(list_, index);
            row.number = QAccessible::registerAccessibleInterface(row.made);
        }
        return QAccessible::accessibleInterface(rows_.value(index).number);
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        for (int index = 0; index < childCount(); ++index) {
            if (this->child(index) == child) return index;
        }
        return -1;
    }

    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        const QPoint place = list_.viewport()->mapFromGlobal(QPoint(x, y));
        const QListWidgetItem* item = list_.itemAt(place);
        return item == nullptr ? nullptr : child(list_.row(item));
    }

    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        return list_.hasFocus() ? child(list_.currentRow()) : nullptr;
    }

  private:
    /// The toolkit owns it once it has a number.
    struct Row {
        QAccessibleInterface* made = nullptr;
        QAccessible::Id number = 0;
    };

    QListWidget& list_;
    mutable QHash<int, Row> rows_;  // made when they are first asked for
};

/// The toolkit tells of the list, and of a row only when the user goes to another one.
class RowFocus final : public QObject {
  public:
    explicit RowFocus(QListWidget& list) : QObject(&list), list_(list) {
        list.installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        // The list's own message comes after this event.
        if (event->type() == QEvent::FocusIn) {
            QTimer::singleShot(0, this, [this] { tell(); });
        }
        return false;
    }

  private:
    void tell() {
        if (!list_.hasFocus() || list_.currentRow() < 0) return;
        QAccessibleEvent event(&list_, QAccessible::Focus);
        event.setChild(list_.currentRow());
        QAccessible::updateAccessibility(&event);
    }

    QListWidget& list_;
};

QAccessibleInterface* makeAccessibleRows(const QString& /*className*/, QObject* object) {
    auto* list = qobject_cast<QListWidget*>(object);
    if (list == nullptr || !list->property(checkableProperty).toBool()) return nullptr;
    return new ListOfTickableRows(*list);
}

}  // namespace

void TickableRows::tellScreenReaders() {
    QAccessible::installFactory(makeAccessibleRows);
}

void TickableRows::followFocus(QListWidget& list) {
    new RowFocus(list);
}

void TickableRows::announce(QListWidget& list, int row) {
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(&list, changed);
    event.setChild(row);
    QAccessible::updateAccessibility(&event);
}

}  // namespace installer
