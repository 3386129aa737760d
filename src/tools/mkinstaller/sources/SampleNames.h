#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/mkinstaller/sources/Kit.h"

namespace installer {

/// The names in the kit's texts, which were written for the sample product.
struct SampleNames {
    std::string company;
    std::string product;
    std::string identifier;  ///< its settings domain
    std::string website;     ///< the host of its addresses

    [[nodiscard]] static SampleNames of(const Kit& kit);

    /// The last part of an identifier, by which addresses call the product.
    [[nodiscard]] static std::string wordOf(const std::string& identifier);
};

/// The text with each first one of a pair replaced by the second one, in one pass: what was put in
/// is not looked at again. Where several fit, the longest one does.
[[nodiscard]] std::string replacingEach(
    std::string_view text, std::vector<std::pair<std::string, std::string>> replacements);

}  // namespace installer
