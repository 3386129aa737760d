#include "tools/installerctl/operations/Comparison.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "foundation/values/Paths.h"

namespace installer {

namespace {

/// What of an entry is not as it must be.
std::string differenceBetween(const EntryRecord& expected, const EntryRecord& present) {
    if (expected.kind != present.kind) {
        return "is a " + std::string(nameOf(present.kind)) + " and no " +
               std::string(nameOf(expected.kind));
    }
    EntryRecord withItsMode = expected;
    withItsMode.mode = present.mode;
    if (isSameEntry(withItsMode, present)) return "has another mode";
    return expected.kind == EntryKind::link ? "leads elsewhere" : "has other contents";
}

}  // namespace

ItemComparison compareItem(const std::string& destination, const EntryMap& expected,
                           LinkPolicy links, const ReadProgress& progress) {
    ItemComparison comparison;
    auto tree = recordTree(destination, links, progress);
    if (tree) comparison.present = std::move(tree).value();
    comparison.isThere = !comparison.present.empty();
    std::set<std::string_view> seen;
    for (const EntryRecord& entry : comparison.present) {
        seen.insert(entry.path);
        const auto* alternatives = expected.at(entry.path);
        if (alternatives == nullptr) {
            comparison.extra.push_back(entry);
        } else if (!expected.knows(entry)) {
            comparison.changed.push_back(
                {entry.path, differenceBetween(alternatives->front(), entry)});
        }
    }
    for (const auto* alternatives : expected.tree(destination)) {
        const std::string& path = alternatives->front().path;
        if (!seen.contains(path)) comparison.missing.push_back({path, "is missing"});
    }
    return comparison;
}

std::vector<std::string> topmost(const std::vector<EntryRecord>& records) {
    std::vector<std::string> tops;
    for (const EntryRecord& record : records) {
        if (tops.empty() || !record.path.starts_with(tops.back() + "/")) {
            tops.push_back(record.path);
        }
    }
    return tops;
}

}  // namespace installer
