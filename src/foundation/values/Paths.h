#pragma once

#include <string>
#include <string_view>

namespace installer {

// Rules about paths as texts. They do not look at the disk. An empty text means "no path". None of
// them returns a path with a doubled separator.

/// Both paths with one separator between them. If `folder` is empty the result is `entry`; if
/// `entry` is empty it is `folder`. The result has no separator at its end.
[[nodiscard]] std::string joinPath(std::string_view folder, std::string_view entry);

/// The last component of the path; separators at the end are ignored. "/" for the root.
[[nodiscard]] std::string lastPathComponent(std::string_view path);

/// The path without its last component: "/a" for "/a/b" and for "/a/b/", "/" for "/a", the empty
/// text for "a".
[[nodiscard]] std::string parentPath(std::string_view path);

/// The path with each run of separators replaced by one, and without a separator at the end (except
/// for the root).
[[nodiscard]] std::string withSingleSeparators(std::string_view path);

}  // namespace installer
