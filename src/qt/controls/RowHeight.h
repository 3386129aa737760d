#pragma once

#include <QObject>

class QListView;

namespace installer {

/// The height of the rows of a list whose area has that height: `natural` while all of them fit,
/// else a lower one with which one row more is seen, and the last one not cut. Where that would be
/// below `least`, fewer and higher rows fill the list.
[[nodiscard]] int rowHeightThatFits(int area, int rows, int least, int natural);

/// Asks the list's delegate for the rows' heights again whenever the list's height changes.
class RowsFollowHeight final : public QObject {
  public:
    /// Ends with the list.
    explicit RowsFollowHeight(QListView& list);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QListView& list_;
};

}  // namespace installer
