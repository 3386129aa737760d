#pragma once

#include <string>

namespace installer {

/// A Photoshop that was found and is not offered, and why.
struct NotOfferedHost {
    enum class Reason {
        tooOld,
        elements,
        folderMissing,  ///< there is no application in the folder that its file names
        unreadable,     ///< its paths file cannot be read, or names no folder
    };

    std::string name;
    Reason reason = Reason::tooOld;

    friend bool operator==(const NotOfferedHost&, const NotOfferedHost&) = default;
};

/// The reason as the end of a sentence about the host, in English.
[[nodiscard]] const char* description(NotOfferedHost::Reason reason);

}  // namespace installer
