#include "install/engine/DecimalNumber.h"

#include <algorithm>

namespace installer {

DecimalNumber DecimalNumber::parsed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\r"), text.size()));
    const bool hasSign = text.starts_with('-') || text.starts_with('+');
    const bool isNegative = text.starts_with('-');
    if (hasSign) text.remove_prefix(1);
    text = text.substr(0, text.find_first_not_of("0123456789"));
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));

    DecimalNumber number;
    if (text.empty()) return number;
    number.isNegative_ = isNegative;
    number.digits_ = text;
    return number;
}

std::string DecimalNumber::paddedTo(std::size_t width) const {
    const std::size_t length = digits_.size() + (isNegative_ ? 1 : 0);
    const std::string zeros(width - std::min(width, length), '0');
    return (isNegative_ ? "-" : "") + zeros + digits_;
}

std::strong_ordering operator<=>(const DecimalNumber& left, const DecimalNumber& right) {
    if (left.isNegative_ != right.isNegative_) return right.isNegative_ <=> left.isNegative_;
    const DecimalNumber& lower = left.isNegative_ ? right : left;
    const DecimalNumber& higher = left.isNegative_ ? left : right;
    if (const auto order = lower.digits_.size() <=> higher.digits_.size(); order != 0) return order;
    return lower.digits_ <=> higher.digits_;
}

}  // namespace installer
