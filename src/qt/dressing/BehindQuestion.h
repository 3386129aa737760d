#pragma once

class QObject;

namespace installer {

/// Whether a modal dialog is open and the widget or menu item belongs to a window behind it. The
/// toolkit keeps the mouse and the keys from such a control, but not what assistive programs do.
[[nodiscard]] bool isBehindQuestion(const QObject& control);

}  // namespace installer
