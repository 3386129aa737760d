#pragma once

#include <QMainWindow>
#include <QObject>

class QPushButton;

namespace installer {

/// What a main window does by itself. It stays open while it must not be closed. Return presses the
/// button with the focus, else the default button. F10 opens the menu. The focus is never lost: if
/// the control with the focus disappears, the default button gets it, else the first control that
/// can.
class WindowManners final : public QObject {
  public:
    explicit WindowManners(QMainWindow& window);

    static void setClosable(QMainWindow& window, bool closable);
    /// Null if there is no button that can be pressed.
    [[nodiscard]] static QPushButton* defaultButton(const QMainWindow& window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    [[nodiscard]] bool pressesButton(const QEvent& event) const;
    void placeFocus();

    QMainWindow& window_;
};

}  // namespace installer
