// Feeds arbitrary bytes to the readers of string tables and property lists. The build replays its
// corpus. Fuzzing itself needs a compiler that brings libFuzzer, given this file and the sources
// that it exercises (platform/linux/StringsTable, StringsTableText, PropertyList,
// PropertyListShape, foundation/Text) with -fsanitize=fuzzer,address,undefined and -lplist-2.0.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "foundation/Text.h"
#include "platform/linux/PropertyList.h"
#include "platform/linux/StringsTable.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto table = installer::parseStringsTable(bytes);
    for (const auto& [key, value] : table.entries) {
        const bool isText = installer::isUtf8(key) && installer::isUtf8(value);
        if (!isText || key.find('\0') != key.npos || value.find('\0') != value.npos) std::abort();
    }
    if (table.problems.size() > installer::StringsTable::maximumProblems) std::abort();
    std::size_t line = 1;
    for (const auto& problem : table.problems) {
        if (problem.line < line || problem.message.empty()) std::abort();
        line = problem.line;
    }
    if (auto list = installer::PropertyList::parse(bytes)) static_cast<void>(list->serialized());
    return 0;
}
