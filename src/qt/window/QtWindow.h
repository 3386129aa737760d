#pragma once

#include <QMainWindow>
#include <QPointer>

#include "ports/window/View.h"

namespace installer {

class QtWindow final : public Window {
  public:
    explicit QtWindow(QMainWindow* window) : window_(window) {}
    /// Shows the window as large as its contents need and its screen allows. The default button
    /// gets the focus.
    void centerAndShow() override;
    void miniaturize() override;
    void close() override;

  private:
    QPointer<QMainWindow> window_;
};

}  // namespace installer
