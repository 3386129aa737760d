#pragma once

#include <string>
#include <string_view>

namespace installer {

// Rules about paths as texts: nothing here looks at the disk. An empty text is "no path".
// None of these gives a path with a doubled separator.

/// Both paths with one separator between them. With an empty `folder` the result is `entry`, with
/// an empty `entry` it is `folder`; a separator at the end of the result is left away.
[[nodiscard]] std::string joinPath(std::string_view folder, std::string_view entry);

/// The last component of the path; separators at its end do not count. "/" for the root.
[[nodiscard]] std::string lastPathComponent(std::string_view path);

/// The path without its last component: "/a" for "/a/b" and for "/a/b/", "/" for "/a", nothing
/// for "a".
[[nodiscard]] std::string parentPath(std::string_view path);

/// The path with every run of separators made one, and none at the end (but for the root).
[[nodiscard]] std::string withSingleSeparators(std::string_view path);

}  // namespace installer
