#include "tools/mkinstaller/lint/basis/Findings.h"

#include <algorithm>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace installer {

namespace {

auto sortKey(const Finding& finding) {
    return std::tie(finding.place.file, finding.place.line, finding.kind->code, finding.problem);
}

}  // namespace

void Findings::add(std::string_view code, SourcePlace place, std::string problem,
                   std::string repair) {
    const FindingKind* kind = findingKind(code);
    if (kind == nullptr) throw std::logic_error("no kind of finding is " + std::string(code));
    findings_.push_back({kind, std::move(place), std::move(problem), std::move(repair)});
}

std::vector<Finding> Findings::take() {
    std::ranges::sort(findings_, [](const Finding& left, const Finding& right) {
        return sortKey(left) < sortKey(right);
    });
    const auto [first, last] = std::ranges::unique(
        findings_,
        [](const Finding& left, const Finding& right) { return sortKey(left) == sortKey(right); });
    findings_.erase(first, last);
    return std::exchange(findings_, {});
}

Severity severityOf(const Finding& finding, Strictness strictness) {
    return strictness == Strictness::warningsAreErrors ? Severity::error : finding.kind->severity;
}

}  // namespace installer
