#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QProgressBar>

#include "ports/window/View.h"

namespace installer {

class QtProgressIndicator final : public ProgressIndicator {
  public:
    explicit QtProgressIndicator(QProgressBar* bar);
    /// Repaints the whole application if needed, at most once per frame.
    void setFraction(double fraction) override;

  private:
    QPointer<QProgressBar> bar_;
    QElapsedTimer sinceRepaint_;
};

}  // namespace installer
