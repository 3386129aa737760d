#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "foundation/text/StyledText.h"

namespace installer {

/// What is wrong with a text that is no RTF, in words for the system log.
struct RtfError {
    std::string reason;
};

/// Reads what text editors write as RTF. Destinations and control words that it does not know are
/// passed over, as the format wants. An error for a text that is empty, does not begin as RTF, or
/// ends before its groups do, or whose groups nest deeper than 10,000; what follows the last group
/// is ignored. Time and memory are linear in the length of the text, whatever it holds.
///
/// Unicode escapes give every character. Other bytes are read in the code page of their font or
/// document: all of Windows' single-byte ones, the common ones of DOS, Mac Roman, Japanese (932)
/// and UTF-8. In the other double-byte ones (936, 949, 950, 1361) each character gives one U+FFFD.
/// Cells of tables end with tabs, their rows as paragraphs. Text without a size or a font has none.
[[nodiscard]] std::variant<StyledText, RtfError> readRtf(std::string_view rtf);

}  // namespace installer
