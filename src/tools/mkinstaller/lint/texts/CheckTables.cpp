#include "tools/mkinstaller/lint/texts/CheckTables.h"

#include <string_view>
#include <utility>

#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

using Mistake = StringsTable::Mistake;

struct Explained {
    std::string_view code;
    const char* repair;
};

Explained explained(Mistake mistake) {
    switch (mistake) {
        case Mistake::damagedBytes:
            return {"M011", "save the file as UTF-8"};
        case Mistake::textWithoutClosingQuote:
            return {"M012", "write \" at the text's end, and \\\" for a quote inside it"};
        case Mistake::incompletePair:
            return {"M013", "write each pair as \"key\" = \"text\";"};
        case Mistake::missingSemicolon:
            return {"M014", "write ; behind the text"};
        case Mistake::commentWithoutEnd:
            return {"M015", "write */ where the comment ends"};
        case Mistake::escapeWithoutCharacter:
            return {"M016", "write the character itself; the file is UTF-8"};
        case Mistake::unknownEscape:
            return {"M017", "write \\\\ for a backslash; known are \\\" \\\\ \\n \\t and \\U1234"};
        case Mistake::repeatedKey:
            return {"M018", "remove one of the two: only the last one is used"};
    }
    return {"M013", "write each pair as \"key\" = \"text\";"};
}

void tellMistakes(const LintContext& context, const TextTable& table) {
    if (!table.read) return;
    for (const auto* mistakes : {&table.read->problems, &table.read->remarks}) {
        for (const StringsTable::Problem& problem : *mistakes) {
            const auto [code, repair] = explained(problem.mistake);
            context.findings.add(code, {table.file, problem.line}, problem.message, repair);
        }
    }
}

bool isName(const std::string& key) {
    return key == "company_name" || key == "product_name";  // told by the check of names
}

void tellMissing(const LintContext& context, const TextTables& tables, const std::string& name,
                 const TextTable& table) {
    for (const auto& [key, text] : tables.wanted(name)) {
        if (table.text(key) != nullptr || isName(key)) continue;
        context.findings.add("M019", {table.file, table.lastLine},
                             "the key \"" + key + "\" is missing, so nothing is shown in its place",
                             "add \"" + key + "\" = \"" + "...\"; as in the other languages");
    }
}

void tellUnknown(const LintContext& context, const TextTables& tables, const std::string& name,
                 const TextTable& table, const std::set<std::string>& keysOfLayouts) {
    if (!table.read) return;
    for (const auto& [key, text] : table.read->entries) {
        if (tables.wanted(name).contains(key)) continue;
        if (name == "Localizable" && keysOfLayouts.contains(key)) continue;
        context.findings.add("M020", {table.file, table.line(key)},
                             "nothing asks for the key \"" + key + "\"",
                             "remove it, or correct its spelling");
    }
}

}  // namespace

void checkTables(const LintContext& context, const TextTables& tables,
                 const std::set<std::string>& keysOfLayouts) {
    for (const std::string& language : tables.languages()) {
        for (const std::string& name : TextTables::names()) {
            const TextTable& table = tables.table(language, name);
            if (!table.read) {
                const bool isThere = entryType(table.file) != EntryType::missing;
                context.findings.add("M010", {table.file},
                                     isThere ? "the table cannot be read" : "the table is missing",
                                     isThere ? "make it a file of at most 16 MiB that all may read"
                                             : "copy it from another language and translate it");
                continue;
            }
            tellMistakes(context, table);
            tellMissing(context, tables, name, table);
            tellUnknown(context, tables, name, table, keysOfLayouts);
        }
    }
}

}  // namespace installer
