#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/mkinstaller/lint/basis/XmlScan.h"

namespace installer {

/// The description of a window's part, as its file has it. Every piece knows its line.
struct LayoutFile {
    struct Property {
        std::string name;
        std::string value;
        std::size_t line = 1;
        std::size_t valueLine = 1;
        bool isDynamic = false;  ///< not one of the toolkit's own
    };
    /// A widget or a menu item.
    struct Widget {
        std::string type;
        std::string name;
        std::size_t line = 1;
        std::vector<Property> properties = {};
    };
    struct Picture {
        std::string file;
        std::size_t line = 1;
    };

    std::vector<Widget> widgets;
    std::vector<Picture> pictures;
    std::optional<XmlError> error;  ///< what stands before it was read

    [[nodiscard]] static LayoutFile parse(std::string_view text);

    /// The widget of that name; null without one.
    [[nodiscard]] const Widget* widget(std::string_view name) const;
};

}  // namespace installer
