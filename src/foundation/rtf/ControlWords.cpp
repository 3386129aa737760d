#include "foundation/rtf/ControlWords.h"

#include <algorithm>
#include <array>

namespace installer::rtf {

namespace {

struct Entry {
    std::string_view word;
    Meaning meaning;
};

// Every word that means something here, sorted. Groups that begin with an unknown word are text,
// so the ones that are no text of the document must be named: notes, headers, pictures and facts
// about the document. The mark of a list's item is text.
constexpr auto entries = std::to_array<Entry>({
    {"NeXTGraphic", Destination::skipped},
    {"ansi", Command::ansi},
    {"ansicpg", Command::codePage},
    {"b", CharacterProperty::bold},
    {"blue", Command::blue},
    {"bullet", U'\u2022'},
    {"cell", U'\t'},
    {"cf", CharacterProperty::color},
    {"colortbl", Destination::colorTable},
    {"column", Command::endPage},
    {"cpg", Command::fontCodePage},
    {"datafield", Destination::skipped},
    {"deff", Command::defaultFont},
    {"do", Destination::skipped},
    {"emdash", U'\u2014'},
    {"emspace", U'\u2003'},
    {"endash", U'\u2013'},
    {"enspace", U'\u2002'},
    {"f", CharacterProperty::font},
    {"falt", Destination::skipped},
    {"fcharset", Command::fontCharset},
    {"fi", ParagraphProperty::firstLineIndent},
    {"field", Command::field},
    {"fldinst", Destination::fieldInstruction},
    {"fldrslt", Command::fieldResult},
    {"fonttbl", Destination::fontTable},
    {"footer", Destination::skipped},
    {"footerf", Destination::skipped},
    {"footerl", Destination::skipped},
    {"footerr", Destination::skipped},
    {"footnote", Destination::skipped},
    {"fs", CharacterProperty::size},
    {"green", Command::green},
    {"header", Destination::skipped},
    {"headerf", Destination::skipped},
    {"headerl", Destination::skipped},
    {"headerr", Destination::skipped},
    {"i", CharacterProperty::italic},
    {"info", Destination::skipped},
    {"lbr", lineSeparator},
    {"ldblquote", U'\u201C'},
    {"li", ParagraphProperty::leftIndent},
    {"line", lineSeparator},
    {"listoverridetable", Destination::skipped},
    {"listtable", Destination::skipped},
    {"lquote", U'\u2018'},
    {"ltrmark", U'\u200E'},
    {"ltrpar", ParagraphProperty::leftToRight},
    {"mac", Command::mac},
    {"nestcell", U'\t'},
    {"nestrow", Command::endParagraph},
    {"nonshppict", Destination::skipped},
    {"object", Destination::skipped},
    {"page", Command::endPage},
    {"par", Command::endParagraph},
    {"pard", ParagraphProperty::defaults},
    {"pc", Command::pc},
    {"pca", Command::pca},
    {"pict", Destination::skipped},
    {"plain", CharacterProperty::plain},
    {"pn", Destination::skipped},
    {"pntxta", Destination::skipped},
    {"pntxtb", Destination::skipped},
    {"qc", ParagraphProperty::centered},
    {"qj", ParagraphProperty::justified},
    {"ql", ParagraphProperty::alignedLeft},
    {"qmspace", U'\u2005'},
    {"qnatural", ParagraphProperty::alignedNaturally},
    {"qr", ParagraphProperty::alignedRight},
    {"rdblquote", U'\u201D'},
    {"red", Command::red},
    {"ri", ParagraphProperty::rightIndent},
    {"row", Command::endParagraph},
    {"rquote", U'\u2019'},
    {"rtlmark", U'\u200F'},
    {"rtlpar", ParagraphProperty::rightToLeft},
    {"sa", ParagraphProperty::spaceAfter},
    {"sb", ParagraphProperty::spaceBefore},
    {"sect", Command::endPage},
    {"shp", Destination::skipped},
    {"shprslt", Destination::skipped},
    {"softline", lineSeparator},
    {"strike", CharacterProperty::strikethrough},
    {"striked", CharacterProperty::strikethrough},
    {"stylesheet", Destination::skipped},
    {"tab", U'\t'},
    {"tc", Destination::skipped},
    {"u", Command::unicode},
    {"uc", Command::fallbackLength},
    {"ud", Command::unicodeAlternative},
    {"ul", CharacterProperty::underline},
    {"uld", CharacterProperty::underline},
    {"uldash", CharacterProperty::underline},
    {"uldashd", CharacterProperty::underline},
    {"uldashdd", CharacterProperty::underline},
    {"uldb", CharacterProperty::underline},
    {"ulhair", CharacterProperty::underline},
    {"ulhwave", CharacterProperty::underline},
    {"ulldash", CharacterProperty::underline},
    {"ulnone", CharacterProperty::noUnderline},
    {"ulth", CharacterProperty::underline},
    {"ulthd", CharacterProperty::underline},
    {"ulthdash", CharacterProperty::underline},
    {"ulthdashd", CharacterProperty::underline},
    {"ulthdashdd", CharacterProperty::underline},
    {"ulthldash", CharacterProperty::underline},
    {"ululdbwave", CharacterProperty::underline},
    {"ulw", CharacterProperty::underline},
    {"ulwave", CharacterProperty::underline},
    {"upr", Destination::alternatives},
    {"v", CharacterProperty::hidden},
    {"xe", Destination::skipped},
    {"zwbo", U'\u200B'},
    {"zwj", U'\u200D'},
    {"zwnbo", U'\u2060'},
    {"zwnj", U'\u200C'},
});
static_assert(std::ranges::is_sorted(entries, {}, &Entry::word));

}  // namespace

std::optional<Meaning> meaningOf(std::string_view controlWord) {
    const auto* const entry = std::ranges::lower_bound(entries, controlWord, {}, &Entry::word);
    if (entry == entries.end() || entry->word != controlWord) return std::nullopt;
    return entry->meaning;
}

std::optional<char32_t> characterOfSymbol(char symbol) {
    switch (symbol) {
        case '\\':
        case '{':
        case '}':
            return static_cast<char32_t>(symbol);
        case '~':
            return U'\u00A0';
        case '-':
            return U'\u00AD';
        case '_':
            return U'\u2011';
        case '\t':
            return U'\t';
        default:
            return std::nullopt;
    }
}

}  // namespace installer::rtf
