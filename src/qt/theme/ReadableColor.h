#pragma once

#include <QColor>

namespace installer {

/// The contrast ratio of two colours, from 1 (equal) to 21 (black and white), as the accessibility
/// guidelines of the web define it.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// The colour itself if it has at least that contrast, else the nearest lighter or darker one that
/// has; black or white where none has.
[[nodiscard]] QColor colorWithContrast(double least, const QColor& wanted, const QColor& ground);

/// The colour itself if it can be read on the background, else the nearest lighter or darker one
/// that can. So a text made for white paper can be read in a dark window.
[[nodiscard]] QColor readableColor(const QColor& wanted, const QColor& ground);

/// What a colour that was chosen for a white background becomes on `ground`: the same on a light
/// one, its counterpart on a dark one, so black becomes white and a quiet grey stays quiet. A
/// colour that stands out on white has a contrast of at least 7 here too, every other colour
/// of 4.5.
[[nodiscard]] QColor counterpart(const QColor& onPaper, const QColor& ground);

/// A colour between text and background: as quiet as possible while it can still be read.
[[nodiscard]] QColor quietColor(const QColor& text, const QColor& ground);

/// A line between two parts of the window, of that text's and that ground's colour.
[[nodiscard]] QColor hairlineColor(const QColor& text, const QColor& ground);

}  // namespace installer
