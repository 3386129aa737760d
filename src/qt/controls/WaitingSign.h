#pragma once

#include <QObject>
#include <QTimer>

class QLabel;

namespace installer {

/// A calm sign in a label: three dots that take turns while something is waited for, then a green
/// check mark. It moves only while it can be seen.
class WaitingSign final : public QObject {
  public:
    /// Ends with the label, which has a fixed size.
    explicit WaitingSign(QLabel& label);

    void setWaiting(bool waiting);

  private:
    void draw();

    QLabel& label_;
    QTimer turns_;
    int turn_ = 0;
    bool waiting_ = false;
};

}  // namespace installer
