#pragma once

namespace installer {

enum class Colors { none, terminal };

/// Colours are for a terminal that shows them, and for people who have not set NO_COLOR.
[[nodiscard]] Colors colorsOfStandardOutput();

/// Whether standard output is a terminal at all.
[[nodiscard]] bool isStandardOutputTerminal();

}  // namespace installer
