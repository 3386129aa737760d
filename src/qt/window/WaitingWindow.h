#pragma once

#include <QWidget>

namespace installer {

/// A plain window with the application's name and a moving sign, for the time before the
/// application can show a window of its own. Goes away as soon as another one is shown. The user
/// cannot close it: there is nothing yet that could be ended in order.
class WaitingWindow final : public QWidget {
  public:
    WaitingWindow();

  protected:
    void closeEvent(QCloseEvent* event) override;
    /// Sees the events of the whole application.
    bool eventFilter(QObject* object, QEvent* event) override;
};

}  // namespace installer
