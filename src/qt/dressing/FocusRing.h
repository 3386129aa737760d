#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QWidget>

namespace installer {

/// Shows which control of a window has the focus, wherever keys have moved it, also on controls
/// that the desktop's style leaves without a sign. A click needs no ring.
class FocusRing final : public QWidget {
  public:
    /// Ends with the window.
    explicit FocusRing(QMainWindow& window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void focusCame(QWidget& control, Qt::FocusReason reason);
    void surround(QWidget* control);
    void place();

    QMainWindow& window_;
    QPointer<QWidget> control_;
};

}  // namespace installer
