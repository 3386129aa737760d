#pragma once

class QListWidget;

namespace installer {

/// The rows of a list with the property `checkable`, as screen readers see them: check boxes. The
/// toolkit shows them as items, and then a reader does not say that one is not ticked, or that the
/// user has ticked it.
class TickableRows {
  public:
    /// Holds for every list that is made from then on.
    static void tellScreenReaders();

    /// Says from now on which row of the list has the keys when the list gets them.
    static void followFocus(QListWidget& list);

    /// Says that the row was ticked or unticked.
    static void announce(QListWidget& list, int row);
};

}  // namespace installer
