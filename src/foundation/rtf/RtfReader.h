#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "foundation/text/StyledText.h"

namespace installer {

/// Why a text is not RTF, in words for the system log.
struct RtfError {
    std::string reason;
};

/// Reads RTF as text editors write it. Unknown destinations and control words are ignored, as the
/// format demands. An error if the text is empty, does not begin as RTF, ends inside a group, or
/// nests groups deeper than 10,000. Text after the last group is ignored. Time and memory are
/// linear in the length of the text; what the window would not show (`ShownLength`) is left out.
///
/// Unicode escapes give any character. Other bytes are read in the code page of their font or
/// document: all single-byte ones of Windows, the common ones of DOS, Mac Roman, Japanese (932) and
/// UTF-8. In the other double-byte code pages (936, 949, 950, 1361) each character becomes one
/// U+FFFD. Table cells end with a tab, table rows are paragraphs. If the text names no size or
/// font, the result has none.
[[nodiscard]] std::variant<StyledText, RtfError> readRtf(std::string_view rtf);

}  // namespace installer
