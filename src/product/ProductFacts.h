#pragma once

#include <array>

namespace installer {

// What is compiled in about products: values that the rules fix and that no file of the bundle
// changes. All other names and texts come from the bundle.

/// The domain of the installer's own settings, the same for every product.
inline constexpr const char* settingsDomain = "com.quarrytone.installer";

/// The photo editor whose list of external editors a run writes.
inline constexpr const char* externalEditorsProduct = "Prismor X";

/// A product of the maker that is added to that list if it is installed.
struct SiblingProduct {
    const char* name;         ///< as the list shows it
    const char* application;  ///< its path, without a target volume
};

/// In the order of the list.
inline constexpr std::array<SiblingProduct, 2> siblingProducts = {{
    {"Inkvale 4", "/Applications/Quarrytone Inkvale 4.app"},
    {"Magniford 3",
     "/Library/Application Support/Quarrytone/Magniford 3/Quarrytone Magniford 3.app"},
}};

}  // namespace installer
