#include "qt/dressing/MenuButton.h"

#include <QAccessibleWidget>
#include <QAction>
#include <QEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QToolButton>

namespace installer {

namespace {

/// Three short lines, as on the menu buttons of most desktops.
QPixmap sign(const QColor& color, int side, double pixelsPerUnit) {
    QPixmap picture(QSize(side, side) * pixelsPerUnit);
    picture.setDevicePixelRatio(pixelsPerUnit);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    for (const double place : {0.25, 0.5, 0.75}) {
        painter.drawRect(QRectF(0, side * place - 1, side, 2));
    }
    return picture;
}

/// Screen readers see the open menu as a part of its button. The toolkit shows them only the menus
/// of menu bars.
class ButtonWithMenu final : public QAccessibleWidget {
  public:
    explicit ButtonWithMenu(QToolButton& button)
        : QAccessibleWidget(&button, QAccessible::ButtonMenu), button_(button) {}

    [[nodiscard]] int childCount() const override {
        return button_.menu() && button_.menu()->isVisible() ? 1 : 0;
    }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        return index < childCount() ? QAccessible::queryAccessibleInterface(button_.menu())
                                    : nullptr;
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        return childCount() > 0 && child->object() == button_.menu() ? 0 : -1;
    }
    [[nodiscard]] QStringList actionNames() const override {
        return QStringList(pressAction()) + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name == pressAction()) {
            button_.click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

  private:
    QToolButton& button_;
};

QAccessibleInterface* makeAccessibleMenuButton(const QString& /*className*/, QObject* object) {
    auto* button = qobject_cast<QToolButton*>(object);
    if (button == nullptr || !button->property(MenuButton::holdsMenu).toBool()) return nullptr;
    return new ButtonWithMenu(*button);
}

bool isReturnOrEnter(const QEvent& event) {
    if (event.type() != QEvent::KeyPress) return false;
    const int key = static_cast<const QKeyEvent&>(event).key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

}  // namespace

MenuButton::MenuButton(QToolButton& button)
    : QObject(&button), button_(button), menu_(new QMenu(&button)) {
    const QList<QAction*> items = button.actions();
    for (QAction* item : items) {
        button.removeAction(item);
        menu_->addAction(item);
        // Its shortcut works while the menu is closed.
        button.window()->addAction(item);
    }
    // Screen readers find the menu through the button.
    button.setMenu(menu_);
    button.setAutoRaise(true);
    button.setFocusPolicy(Qt::StrongFocus);
    menu_->setAccessibleName(button.accessibleName());
    drawSign();
    button.installEventFilter(this);
    QObject::connect(&button, &QToolButton::clicked, this, &MenuButton::open);
    QObject::connect(menu_, &QMenu::aboutToHide, &button, [&button] { button.setDown(false); });
}

void MenuButton::tellScreenReaders() {
    QAccessible::installFactory(makeAccessibleMenuButton);
}

void MenuButton::open() {
    if (!button_.isVisible() || !button_.isEnabled()) return;
    const bool mirrored = button_.layoutDirection() == Qt::RightToLeft;
    const QSize size = menu_->sizeHint();
    const QPoint corner = button_.mapToGlobal(mirrored ? QPoint(button_.width(), 0) : QPoint());
    button_.setDown(true);
    menu_->popup(corner - QPoint(mirrored ? size.width() : 0, size.height()));
    menu_->setActiveAction(menu_->actions().value(0));
}

MenuButton* MenuButton::of(const QWidget& window) {
    for (const auto* button : window.findChildren<QToolButton*>()) {
        for (QObject* child : button->children()) {
            if (auto* found = dynamic_cast<MenuButton*>(child)) return found;
        }
    }
    return nullptr;
}

bool MenuButton::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::PaletteChange) drawSign();
    if (!isReturnOrEnter(*event)) return false;
    open();
    return true;
}

void MenuButton::drawSign() {
    const QColor color = button_.palette().color(QPalette::ButtonText);
    button_.setIcon(
        QIcon(sign(color, button_.iconSize().width(), 2 * button_.devicePixelRatioF())));
}

}  // namespace installer
