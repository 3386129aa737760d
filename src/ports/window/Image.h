#pragma once

#include <string>

namespace installer {

/// A picture, by the file that holds it. The view that shows it reads the file; one that is missing
/// or no picture shows nothing.
struct Image {
    std::string path = {};  ///< empty for no picture

    friend bool operator==(const Image&, const Image&) = default;
};

}  // namespace installer
