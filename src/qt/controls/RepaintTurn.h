#pragma once

namespace installer {

/// Lets the application repaint, also windows that were just uncovered. Nothing else happens:
/// input, timers and notifications wait. Does nothing if such a turn is already running.
void runRepaintTurn();

/// Whether such a turn is running. Some of the toolkit's loops still deliver watched descriptors in
/// it, so code that watches one must ask.
[[nodiscard]] bool isRepaintTurn();

}  // namespace installer
