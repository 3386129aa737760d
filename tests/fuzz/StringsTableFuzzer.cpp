// The reader of string tables.

#include <cstddef>

#include "foundation/text/Text.h"
#include "linux/bundle/StringsTable.h"
#include "tests/fuzz/FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using installer::fuzz::require;
    const auto table = installer::parseStringsTable(installer::fuzz::textOf(data, size));
    for (const auto& [key, value] : table.entries) {
        require(installer::isUtf8(key) && installer::isUtf8(value));
        require(key.find('\0') == key.npos && value.find('\0') == value.npos);
    }
    require(table.problems.size() <= installer::StringsTable::maximumProblems);
    std::size_t line = 1;
    for (const auto& problem : table.problems) {
        require(problem.line >= line && installer::isUtf8(problem.message));
        require(!problem.message.empty());
        line = problem.line;
    }
    return 0;
}
