#include "foundation/rtf/ColorTable.h"

#include <algorithm>
#include <cstddef>

namespace installer::rtf {

void ColorTable::setPart(Command part, std::optional<std::int32_t> number) {
    if (!entry_) entry_.emplace();
    const auto value = static_cast<std::uint8_t>(std::clamp(number.value_or(0), 0, 255));
    if (part == Command::red) entry_->red = value;
    if (part == Command::green) entry_->green = value;
    if (part == Command::blue) entry_->blue = value;
}

void ColorTable::endEntry() {
    colors_.push_back(entry_);
    entry_.reset();
}

std::optional<Color> ColorTable::find(std::int32_t number) const {
    if (number < 0 || static_cast<std::size_t>(number) >= colors_.size()) return std::nullopt;
    return colors_[static_cast<std::size_t>(number)];
}

}  // namespace installer::rtf
