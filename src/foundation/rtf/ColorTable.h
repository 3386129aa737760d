#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "foundation/rtf/ControlWords.h"
#include "foundation/text/StyledText.h"

namespace installer::rtf {

/// The colours of a document by number. An entry without red, green and blue means the window's own
/// colour.
class ColorTable {
  public:
    /// Sets the red, green or blue of the entry that is being listed.
    void setPart(Command part, std::optional<std::int32_t> number);
    void endEntry();

    [[nodiscard]] std::optional<Color> find(std::int32_t number) const;

  private:
    std::vector<std::optional<Color>> colors_;
    std::optional<Color> entry_;
};

}  // namespace installer::rtf
