#pragma once

#include <QString>

class QWidget;

namespace installer {

/// Speaks of a change to which no key press leads, such as a new page. Screen readers are told of a
/// notification that appears in the window; nobody sees it. (They ignore a window's new name: the
/// toolkit's message of it holds no text.)
class Announcement {
  public:
    /// Holds for every announcement from then on.
    static void tellScreenReaders();

    /// Of a window that is not active nothing is said: its name is read when it becomes active.
    static void make(QWidget& window, const QString& text);
};

}  // namespace installer
