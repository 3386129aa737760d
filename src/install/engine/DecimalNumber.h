#pragma once

#include <compare>
#include <cstddef>
#include <string>
#include <string_view>

namespace installer {

/// A whole number of any size.
class DecimalNumber {
  public:
    /// The number a text begins with: leading blanks, an optional sign, decimal digits; what
    /// follows them is ignored. 0 when there are no digits.
    [[nodiscard]] static DecimalNumber parsed(std::string_view text);

    /// The digits, with zeros before them up to that many characters, the minus sign included.
    /// More digits than that are all there.
    [[nodiscard]] std::string paddedTo(std::size_t width) const;

    friend bool operator==(const DecimalNumber&, const DecimalNumber&) = default;
    friend std::strong_ordering operator<=>(const DecimalNumber& left, const DecimalNumber& right);

  private:
    bool isNegative_ = false;
    std::string digits_ = "0";  ///< without zeros before them
};

}  // namespace installer
