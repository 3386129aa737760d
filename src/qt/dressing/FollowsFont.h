#pragma once

#include <QObject>

class QWidget;

namespace installer {

/// Keeps a control's text at the size that its property `textSize` names, now and after a change of
/// the property, whatever font the desktop has and changes to. A size that is not known is the
/// desktop's own.
class FollowsFont final : public QObject {
  public:
    /// Ends with the control, which stays in its parent.
    explicit FollowsFont(QWidget& control);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void apply();

    QWidget& control_;
};

}  // namespace installer
