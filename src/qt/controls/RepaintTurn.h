#pragma once

namespace installer {

/// Lets the application repaint what has to be, exposed windows too, and do nothing else: input,
/// timers and notices wait. A call from within such a turn does nothing.
void runRepaintTurn();

/// Whether such a turn is running. Not every loop of the toolkit holds watched descriptors back;
/// who watches one asks this.
[[nodiscard]] bool isRepaintTurn();

}  // namespace installer
