#pragma once

#include <QFont>

namespace installer {

/// The three sizes of the window's texts, all of which follow the desktop's own size. A strong text
/// is bold and as large as the body.
enum class TextSize { heading, strong, body, small };

/// The desktop's font in that size. A heading is bold and has 14 points, or more where the
/// desktop's own size is so large that a heading of 14 points would not stand out.
[[nodiscard]] QFont fontOfSize(TextSize size, const QFont& desktopFont);

}  // namespace installer
