#include "tools/mkinstaller/lint/basis/FindingKinds.h"

#include <algorithm>
#include <array>

namespace installer {

namespace {

constexpr Severity error = Severity::error;
constexpr Severity warning = Severity::warning;

// A code is never given to another kind: makers look it up, and their scripts name it.
constexpr auto kinds = std::to_array<FindingKind>({
    // The product as a whole.
    {"M001", error, "the product has no language folder"},
    {"M002", error, "a language folder has a wrong name"},
    {"M003", warning, "the product has no English texts"},
    {"M004", error, "the installer's property list is missing or broken"},
    {"M005", error, "the installer's property list has no usable version"},
    {"M006", error, "the installer's identifier is not usable"},
    {"M007", warning, "a file or folder that the installer never looks for"},
    {"M008", error, "a part of the program is missing in the bundle"},
    {"M009", warning, "a leftover of the sample product"},
    // Tables of texts.
    {"M010", error, "a table of texts is missing or cannot be read"},
    {"M011", error, "a table of texts is not in UTF-8"},
    {"M012", error, "a text has no closing quote"},
    {"M013", error, "a pair is not complete"},
    {"M014", error, "a semicolon is missing"},
    {"M015", error, "a comment does not end"},
    {"M016", error, "an escape gives no character"},
    {"M017", warning, "an escape is unknown"},
    {"M018", error, "a key occurs twice"},
    {"M019", error, "a key is missing"},
    {"M020", warning, "a key is unknown"},
    {"M021", error, "placeholders differ between languages"},
    {"M022", error, "a percent sign fills in nothing"},
    {"M023", warning, "a text is not translated"},
    {"M024", error, "a text is empty"},
    {"M025", warning, "a text runs into the name behind it"},
    {"M026", error, "an address cannot be opened"},
    // The names of company and product.
    {"M030", error, "a name is missing"},
    {"M031", error, "a name differs between languages"},
    {"M032", error, "a name contains a slash"},
    {"M033", error, "a name contains control characters"},
    {"M034", error, "a name is \".\" or \"..\""},
    {"M035", error, "a name is too long"},
    {"M036", warning, "a name begins or ends badly"},
    {"M037", error, "the settings domain is not an identifier"},
    {"M038", error, "the company's folder belongs to somebody else"},
    // Pages.
    {"M040", error, "a page is missing"},
    {"M041", error, "a page cannot be read"},
    {"M042", error, "the licence is not in UTF-8"},
    {"M043", error, "a page has another name than the installer asks for"},
    {"M044", error, "a page is too large"},
    {"M045", error, "a page lacks the mark for a name"},
    {"M046", warning, "a page has an unknown mark"},
    {"M047", error, "a page is empty"},
    {"M048", warning, "a page has text behind its end"},
    {"M049", warning, "a page has characters that cannot be shown"},
    // Layouts.
    {"M050", error, "a layout is not well-formed"},
    {"M051", error, "a layout has an unknown property"},
    {"M052", error, "a layout names an unknown action"},
    {"M053", error, "a layout names an unknown text"},
    {"M054", error, "a layout names an unknown property of the installer"},
    {"M055", error, "a layout lacks a widget that the installer needs"},
    {"M056", warning, "a layout lacks a widget that the installer uses"},
    {"M057", error, "the window cannot load a layout"},
    {"M058", error, "a property does not fit its widget"},
    {"M059", error, "a layout names a picture that is not there"},
    {"M060", error, "two widgets of a layout have the same name"},
    // Pictures.
    {"M065", error, "a picture is missing"},
    {"M066", error, "a picture cannot be read"},
    {"M067", warning, "a picture has a wrong size"},
    {"M068", error, "a picture is of another kind than its name says"},
    // The payload.
    {"M070", error, "a payload folder is none of the four"},
    {"M071", error, "a payload folder's name is in another letter case"},
    {"M072", warning, "a payload file is left out"},
    {"M073", warning, "a hidden payload entry is left out"},
    {"M074", error, "a payload link is left out"},
    {"M075", error, "the payload holds a FIFO, a socket or a device"},
    {"M076", error, "a link leads to an absolute place"},
    {"M077", error, "a link leads nowhere"},
    {"M078", warning, "an item replaces a folder that users put files into"},
    {"M079", warning, "a package is installed twice"},
    {"M080", error, "a package's executable is missing"},
    {"M081", error, "a package's executable is not executable"},
    {"M082", error, "a package's property list is missing or broken"},
    {"M083", error, "a package's identifier is not reverse-domain"},
    {"M084", error, "a package's identifier belongs to somebody else"},
    {"M085", error, "two names differ in letter case only"},
    {"M086", error, "a name contains control characters or is not UTF-8"},
    {"M087", error, "a name or path is too long"},
    {"M088", warning, "a program has lost its executable bits"},
    {"M089", error, "a destination is a folder of the system"},
    {"M090", error, "there is nothing to install"},
    {"M091", error, "a payload entry cannot be read"},
    {"M092", warning, "set-user-ID bits are lost"},
    {"M093", error, "a folder of SharedSupport is none of the three"},
    {"M094", error, "a product folder belongs to another company name"},
    {"M095", warning, "a hidden file of a desktop or a version control system"},
});

static_assert(std::ranges::is_sorted(kinds, {}, &FindingKind::code));

}  // namespace

std::span<const FindingKind> findingKinds() {
    return kinds;
}

const FindingKind* findingKind(std::string_view code) {
    const auto found = std::ranges::find(kinds, code, &FindingKind::code);
    return found == kinds.end() ? nullptr : &*found;
}

}  // namespace installer
