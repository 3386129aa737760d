#pragma once

#include <QObject>

#include "ports/window/DescriptionProperties.h"

class QMenu;
class QToolButton;

namespace installer {

/// A quiet button with the window's one menu behind it: its own menu items, which it was given in
/// the description. Opens by a press, by Return, and by the key that opens menus, F10.
class MenuButton final : public QObject {
  public:
    /// The property of a tool button that holds a menu.
    static constexpr const char* holdsMenu = holdsMenuProperty;

    /// Lets screen readers see the menus of such buttons. To be called before one is made.
    static void tellScreenReaders();

    /// Ends with the button.
    explicit MenuButton(QToolButton& button);

    /// Shows the menu at the button and returns; nothing happens while the button cannot be used.
    void open();

    /// The window's; null when it has none.
    [[nodiscard]] static MenuButton* of(const QWidget& window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void drawSign();

    QToolButton& button_;
    QMenu* menu_;
};

}  // namespace installer
