#pragma once

class QWidget;

namespace installer {

/// The window that a dialog belongs to: the active one, else one that is visible, as where no
/// window manager makes any active. Null when there is none.
[[nodiscard]] QWidget* windowOnTop();

}  // namespace installer
