#include "app/texts/SizeText.h"

#include <algorithm>

#include "foundation/text/Format.h"
#include "product/LocalizedText.h"

namespace installer {

namespace {

constexpr std::uint64_t kilobyte = 1000;
constexpr std::uint64_t megabyte = 1000 * kilobyte;
constexpr std::uint64_t gigabyte = 1000 * megabyte;

/// Rounded to tenths below ten, else to a whole number.
std::string number(const Bundle& bundle, std::uint64_t bytes, std::uint64_t unit) {
    const std::uint64_t tenths = (bytes + unit / 20) / (unit / 10);
    if (tenths >= 100 || tenths % 10 == 0) {
        return std::to_string((bytes + unit / 2) / unit);
    }
    return std::to_string(tenths / 10) + localizedText(bundle, "decimal_mark", ".") +
           std::to_string(tenths % 10);
}

}  // namespace

std::string sizeText(const Bundle& bundle, std::uint64_t bytes) {
    // What rounds to a thousand of a unit is one of the next.
    const auto is = [bytes](std::uint64_t unit) { return bytes + unit / 2000 >= unit; };
    if (is(gigabyte)) {
        return formatted(localizedText(bundle, "size_gb_fmt", "%@ GB"),
                         {number(bundle, bytes, gigabyte)});
    }
    if (is(megabyte)) {
        return formatted(localizedText(bundle, "size_mb_fmt", "%@ MB"),
                         {number(bundle, bytes, megabyte)});
    }
    return formatted(localizedText(bundle, "size_kb_fmt", "%@ kB"),
                     {number(bundle, std::max(bytes, kilobyte), kilobyte)});
}

}  // namespace installer
