#include "tools/installerctl/records/EntryRecord.h"

namespace installer {

bool isSameEntry(const EntryRecord& left, const EntryRecord& right) {
    if (left.kind != right.kind) return false;
    if (left.mode && right.mode && left.mode != right.mode) return false;
    if (left.kind == EntryKind::folder) return true;
    return left.size == right.size && left.contents == right.contents && !left.contents.empty();
}

std::string_view nameOf(EntryKind kind) {
    switch (kind) {
        case EntryKind::file:
            return "file";
        case EntryKind::folder:
            return "folder";
        case EntryKind::link:
            return "link";
    }
    return "";
}

}  // namespace installer
