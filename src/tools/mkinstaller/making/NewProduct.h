#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/mkinstaller/sources/Kit.h"

namespace installer {

/// Who makes a new product, and what it is called.
struct NewProductNames {
    std::string company;
    std::string product;
    std::string identifier;              ///< reverse-domain, such as com.example.filters
    std::string website;                 ///< a host; that of the identifier when it is empty
    std::vector<std::string> languages;  ///< of those that the kit speaks; all when it is empty
};

/// What keeps the names from being used, as a sentence for the maker; none when they are fine.
[[nodiscard]] std::optional<std::string> problemOf(const NewProductNames& names, const Kit& kit);

/// Makes the folder with the sources of a small whole product: texts and pages in each language, a
/// property list, an icon, and a payload with one item for each place. It can be checked, assembled
/// and installed as it is. The names are fine. An error, as a sentence, when the folder exists and
/// is not empty, or cannot be written; what was written by then stays.
[[nodiscard]] std::optional<std::string> makeProduct(const std::string& folder,
                                                     const NewProductNames& names, const Kit& kit);

}  // namespace installer
