#pragma once

#include <QObject>

#include "qt/theme/TextSizes.h"

class QWidget;

namespace installer {

/// Keeps a control's text at one of the three sizes, whatever font the desktop has and changes to.
class FollowsFont final : public QObject {
  public:
    /// Ends with the control, which stays in its parent.
    FollowsFont(QWidget& control, TextSize size);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void apply();

    QWidget& control_;
    TextSize size_;
};

}  // namespace installer
