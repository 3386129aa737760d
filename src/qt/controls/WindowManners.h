#pragma once

#include <QMainWindow>
#include <QObject>

class QPushButton;

namespace installer {

/// What a main window does by itself: it stays open while it must not be closed, Return presses
/// the button that has the focus, else the default one, F10 opens the menu, and the focus never
/// stays nowhere: when the control that had it is gone the default button gets it, else the first
/// control that can.
class WindowManners final : public QObject {
  public:
    explicit WindowManners(QMainWindow& window);

    static void setClosable(QMainWindow& window, bool closable);
    /// Null when there is none that could be pressed.
    [[nodiscard]] static QPushButton* defaultButton(const QMainWindow& window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    [[nodiscard]] bool pressesButton(const QEvent& event) const;
    void placeFocus();

    QMainWindow& window_;
};

}  // namespace installer
