#pragma once

#include <QColor>

namespace installer {

/// The contrast ratio of two colours, from 1 (equal) to 21 (black and white), as the accessibility
/// guidelines of the web define it.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// The colour itself if it can be read on the background, else the nearest lighter or darker one
/// that can. So a text made for white paper can be read in a dark window.
[[nodiscard]] QColor readableColor(const QColor& wanted, const QColor& ground);

/// A colour between text and background: as quiet as possible while it can still be read.
[[nodiscard]] QColor quietColor(const QColor& text, const QColor& ground);

}  // namespace installer
