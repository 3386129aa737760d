#pragma once

#include <span>
#include <string_view>

namespace installer {

enum class Severity { warning, error };

/// One kind of mistake that `mkinstaller lint` tells. docs/lint.md explains each by its code.
struct FindingKind {
    std::string_view code;
    Severity severity = Severity::error;
    std::string_view title;
};

/// All kinds, ordered by their codes. The one list of them.
[[nodiscard]] std::span<const FindingKind> findingKinds();

/// The kind with the code, such as "M014"; null for a code that no kind has.
[[nodiscard]] const FindingKind* findingKind(std::string_view code);

}  // namespace installer
