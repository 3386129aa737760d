#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/mkinstaller/lint/basis/FindingKinds.h"

namespace installer {

/// A place in a product's folder.
struct SourcePlace {
    std::string file;      ///< its path, beginning with the product's folder as the maker named it
    std::size_t line = 1;  ///< the first line is 1, also for a mistake of the whole file
};

/// A mistake, where it is, what is wrong and how to repair it (a sentence each, without a full
/// stop).
struct Finding {
    const FindingKind* kind = nullptr;
    SourcePlace place;
    std::string problem;
    std::string repair;
};

/// Collects what the checks find.
class Findings {
  public:
    /// `code` is one of `findingKinds`; another one is an error of the program and ends it.
    void add(std::string_view code, SourcePlace place, std::string problem, std::string repair);

    /// Ordered by file, line and code; what was found twice is there once.
    [[nodiscard]] std::vector<Finding> take();

  private:
    std::vector<Finding> findings_;
};

/// Whether the kind counts as an error: every kind does when warnings are errors.
enum class Strictness { warningsAllowed, warningsAreErrors };
[[nodiscard]] Severity severityOf(const Finding& finding, Strictness strictness);

}  // namespace installer
