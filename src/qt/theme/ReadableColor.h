#pragma once

#include <QColor>

namespace installer {

/// How far two colours are apart in lightness, from 1 for the same to 21 for black and white, as
/// the guidelines for accessible pages measure it.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// The colour itself where it can be read on the ground; else the nearest one that can, lighter or
/// darker, so that a text written for white paper stays readable in a dark window.
[[nodiscard]] QColor readableColor(const QColor& wanted, const QColor& ground);

/// What a colour that was chosen for white paper becomes on the ground: the same on a light one,
/// its counterpart on a dark one, so that black becomes white and a quiet grey stays quiet. What
/// stands out on paper has a contrast of at least 7 here too, everything else of 4.5.
[[nodiscard]] QColor counterpart(const QColor& onPaper, const QColor& ground);

/// The text's colour brought nearer to the ground, as quiet as can still be read.
[[nodiscard]] QColor quietColor(const QColor& text, const QColor& ground);

/// A line between two parts of the window, of that text's and that ground's colour.
[[nodiscard]] QColor hairlineColor(const QColor& text, const QColor& ground);

}  // namespace installer
