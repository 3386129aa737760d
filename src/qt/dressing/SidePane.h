#pragma once

#include <QObject>

class QWidget;

namespace installer {

/// Gives a pane at the window's side the ground of a sheet of paper: light in a light window,
/// darker than the window in a dark one. Follows the desktop.
class SidePane final : public QObject {
  public:
    /// Ends with the pane, which stays in its parent.
    explicit SidePane(QWidget& pane);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void apply();

    QWidget& pane_;
};

}  // namespace installer
