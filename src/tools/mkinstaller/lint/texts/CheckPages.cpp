#include "tools/mkinstaller/lint/texts/CheckPages.h"

#include <set>
#include <string>
#include <string_view>
#include <variant>

#include "foundation/rtf/RtfReader.h"
#include "foundation/rtf/Tokenizer.h"
#include "foundation/text/ShownLength.h"
#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "foundation/values/Utf8.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

constexpr const char* licence = "license.txt";
constexpr std::string_view replacement = "\uFFFD";

/// The marks such as %HOSTNAME% that the installer writes a name into.
std::set<std::string> marksIn(std::string_view text) {
    std::set<std::string> marks;
    for (auto from = text.find('%'); from != std::string_view::npos; from = text.find('%', from)) {
        const auto to = text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_", from + 1);
        if (to != std::string_view::npos && to > from + 1 && text[to] == '%') {
            marks.insert(std::string(text.substr(from, to - from + 1)));
            from = to;
        }
        ++from;
    }
    return marks;
}

/// Where the document's last group ends; its whole length when it never does.
std::size_t endOfDocument(std::string_view text) {
    rtf::Tokenizer tokenizer(text);
    std::size_t depth = 0;
    for (;;) {
        const rtf::Token token = tokenizer.next();
        if (token.kind == rtf::Token::Kind::end) return text.size();
        if (token.kind == rtf::Token::Kind::groupStart) ++depth;
        if (token.kind == rtf::Token::Kind::groupEnd && --depth == 0) return tokenizer.place();
    }
}

std::size_t firstDamagedByte(std::string_view text) {
    for (std::size_t place = 0; place < text.size();) {
        const Utf8Character character = utf8CharacterAt(text, place);
        if (!character.codePoint) return place;
        place += character.length;
    }
    return text.size();
}

class PageCheck {
  public:
    PageCheck(const LintContext& context, std::string file, std::string kitFile)
        : context_(context), file_(std::move(file)), kitFile_(std::move(kitFile)) {}

    void check() {
        const auto bytes = contentsOf(file_);
        if (!bytes) {
            const bool isTooLarge = isFile(file_);
            tell(isTooLarge ? "M044" : "M041", 1,
                 isTooLarge ? "the page is larger than 16 MiB, or nobody may read it"
                            : "the page is no file",
                 "make it a file of at most 16 MiB that all may read");
            return;
        }
        if (lastPathComponent(file_) == licence) {
            checkLicence(*bytes);
        } else {
            checkRtf(*bytes);
        }
    }

  private:
    void tell(std::string_view code, std::size_t line, std::string problem, std::string repair) {
        context_.findings.add(code, {file_, line}, std::move(problem), std::move(repair));
    }

    void tellTooLong(std::size_t line) {
        tell("M044", line,
             "the window shows 512 kB of a page in at most 8192 lines or changes of style, and "
             "cuts the rest",
             "shorten it, or put the long text into a file that is installed");
    }

    void checkLicence(const std::string& text) {
        if (!isValidUtf8(text)) {
            tell("M042", lineOf(text, firstDamagedByte(text)),
                 "the licence is not in UTF-8, so \"nil\" is shown in its place",
                 "save it as UTF-8");
        } else if (trimmed(replacingAll(text, "\n", "")).empty()) {
            tell("M047", 1, "the licence is empty", "write the licence's text");
        } else if (const auto shown = shownPart(text); shown.size() < text.size()) {
            tellTooLong(lineOf(text, shown.size()));
        }
    }

    void checkRtf(const std::string& bytes) {
        const auto read = readRtf(bytes);
        if (const auto* error = std::get_if<RtfError>(&read)) {
            const bool endsTooEarly = contains(error->reason, "ends");
            tell(trimmed(bytes).empty() ? "M047" : "M041",
                 endsTooEarly ? lineOf(bytes, bytes.size() - 1) : 1,
                 error->reason + ", so \"nil\" is shown in its place",
                 "save the page as RTF with a text editor");
            return;
        }
        const std::string text = std::get<StyledText>(read).plainText();
        if (trimmed(replacingAll(text, "\n", "")).empty()) {
            tell("M047", 1, "the page is empty", "write what the page should say");
            return;
        }
        if (std::get<StyledText>(read).isCut) tellTooLong(1);
        checkEnd(bytes);
        if (contains(text, replacement)) {
            tell("M049", 1, "the page has characters that the reader does not know",
                 "save it with Unicode escapes, as most editors do");
        }
        checkMarks(bytes, text);
    }

    void checkEnd(const std::string& bytes) {
        const std::size_t end = endOfDocument(bytes);
        const auto more = bytes.find_first_not_of(std::string_view(" \t\r\n\0", 5), end);
        if (more == std::string::npos) return;
        tell("M048", lineOf(bytes, more), "the text behind the page's last brace is never shown",
             "remove it, or the brace that closes too early");
    }

    void checkMarks(const std::string& bytes, const std::string& text) {
        const auto kitPage = contentsOf(kitFile_);
        if (!kitPage) return;
        const std::set<std::string> known = marksIn(*kitPage);
        const std::set<std::string> used = marksIn(text);
        for (const std::string& mark : known) {
            if (used.contains(mark)) continue;
            tell("M045", 1, "the page lacks " + mark + ", so it never says that name",
                 "write " + mark + " where the name belongs");
        }
        for (const std::string& mark : used) {
            if (known.contains(mark)) continue;
            const auto place = bytes.find(mark);
            tell("M046", lineOf(bytes, place == std::string::npos ? 0 : place),
                 "nothing is filled in for " + mark + " on this page",
                 known.empty() ? "remove it" : "write " + *known.begin());
        }
    }

    const LintContext& context_;
    std::string file_;
    std::string kitFile_;
};

}  // namespace

void checkPages(const LintContext& context) {
    const std::string kitFolder = joinPath(context.kit.texts(), "en.lproj");
    for (const std::string& name : sortedNames(kitFolder)) {
        if (name != licence && suffixOf(name) != "rtf") continue;
        // What all languages share is used where neither the language nor English has a page.
        const std::string shared = joinPath(context.product.resources, name);
        const bool isShared = entryType(shared) != EntryType::missing;
        if (isShared) PageCheck(context, shared, joinPath(kitFolder, name)).check();
        for (const std::string& language : context.product.languages()) {
            const std::string file = joinPath(context.product.languageFolder(language), name);
            if (entryType(file) != EntryType::missing) {
                PageCheck(context, file, joinPath(kitFolder, name)).check();
            } else if (!isShared) {
                context.findings.add("M040", {file}, "the page is missing",
                                     "copy it from another language and translate it");
            }
        }
    }
}

}  // namespace installer
