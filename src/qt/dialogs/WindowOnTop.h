#pragma once

class QWidget;

namespace installer {

/// The window that a dialog belongs to: the active window, else a visible one (without a window
/// manager no window is active). Null if there is none.
[[nodiscard]] QWidget* windowOnTop();

}  // namespace installer
