#include "linux/bundle/StringsTable.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "foundation/values/Utf8.h"
#include "linux/bundle/StringsTableText.h"

namespace installer {

namespace {

constexpr char32_t endOfText = 0;  // no table's text holds it: a NUL is replaced while decoding

bool isWhiteSpace(char32_t character) {
    return character == U' ' || (character >= U'\t' && character <= U'\r') || character == 0x00A0 ||
           character == 0x2028 || character == 0x2029;
}

bool isUnquoted(char32_t character) {
    return (character >= U'a' && character <= U'z') || (character >= U'A' && character <= U'Z') ||
           (character >= U'0' && character <= U'9') ||
           std::u32string_view(U"_$.-:/").find(character) != std::u32string_view::npos;
}

std::optional<char32_t> digit(char32_t character, char32_t base) {
    char32_t value = base;
    if (character >= U'0' && character <= U'9') value = character - U'0';
    if (character >= U'a' && character <= U'f') value = character - U'a' + 10;
    if (character >= U'A' && character <= U'F') value = character - U'A' + 10;
    if (value >= base) return std::nullopt;
    return value;
}

class Parser {
  public:
    explicit Parser(std::string_view bytes)
        : text_(decodeStringsTable(bytes)), rereadable_(4 * text_.characters.size()) {}

    StringsTable parse() {
        while (skipSpace() && current() != endOfText) readPair();
        auto& problems = table_.problems;
        for (const std::size_t line : text_.damagedLines) {
            if (problems.size() >= 2 * StringsTable::maximumProblems) break;
            problems.push_back(
                {line, "bytes that are no text were replaced", Mistake::damagedBytes});
        }
        std::stable_sort(problems.begin(), problems.end(), [](const auto& left, const auto& right) {
            return left.line < right.line;
        });
        if (problems.size() > StringsTable::maximumProblems)
            problems.resize(StringsTable::maximumProblems);
        return std::move(table_);
    }

  private:
    struct Place {
        std::size_t index = 0;
        std::size_t line = 1;
    };

    [[nodiscard]] char32_t at(std::size_t offset) const {
        const std::size_t index = place_.index + offset;
        return index < text_.characters.size() ? text_.characters[index] : endOfText;
    }
    [[nodiscard]] char32_t current() const { return at(0); }
    [[nodiscard]] bool beginsComment() const {
        return current() == U'/' && (at(1) == U'/' || at(1) == U'*');
    }
    void advance() {
        if (current() == U'\n') ++place_.line;
        if (place_.index < text_.characters.size()) ++place_.index;
    }

    using Mistake = StringsTable::Mistake;

    void problem(std::size_t line, std::string message, Mistake mistake) {
        if (table_.problems.size() < StringsTable::maximumProblems)
            table_.problems.push_back({line, std::move(message), mistake});
    }

    void remark(std::size_t line, std::string message, Mistake mistake) {
        if (table_.remarks.size() < StringsTable::maximumProblems)
            table_.remarks.push_back({line, std::move(message), mistake});
    }

    void keep(const std::string& key, std::size_t keyLine, std::string value) {
        const auto [entry, isNew] = table_.lines.insert_or_assign(key, keyLine);
        if (!isNew)
            remark(keyLine, "the key " + inQuotes(key) + " occurs again", Mistake::repeatedKey);
        table_.entries.insert_or_assign(key, std::move(value));
    }

    /// Skips white space and comments; false when a comment does not end.
    bool skipSpace() {
        for (;;) {
            if (isWhiteSpace(current())) {
                advance();
            } else if (current() == U'/' && at(1) == U'/') {
                while (current() != U'\n' && current() != endOfText) advance();
            } else if (current() == U'/' && at(1) == U'*') {
                if (!skipBlockComment()) return false;
            } else {
                return true;
            }
        }
    }

    bool skipBlockComment() {
        const std::size_t line = place_.line;
        advance();
        advance();
        while (current() != endOfText && (current() != U'*' || at(1) != U'/')) advance();
        if (current() == endOfText) {
            problem(line, "this comment does not end", Mistake::commentWithoutEnd);
            return false;
        }
        advance();
        advance();
        return true;
    }

    void readPair() {
        spansLines_ = false;
        const std::size_t keyLine = place_.line;
        const auto key = readText("a key");
        if (!key) return recoverFrom(resumption_);
        const Place afterKey = place_;
        if (!skipSpace()) return;
        if (current() != U'=') {
            problem(keyLine, "\"=\" is missing after the key " + inQuotes(*key),
                    Mistake::incompletePair);
            return resumeAfter(afterKey);
        }
        advance();
        if (!skipSpace()) return;
        readValue(*key, keyLine);
    }

    void readValue(const std::string& key, std::size_t keyLine) {
        const Place start = place_;
        auto value = readText("a value");
        if (!value) return recoverFrom(resumption_);
        const Place afterValue = place_;
        const bool hasEnd = skipSpace();
        if (current() == U'=') {
            problem(keyLine, "the value of " + inQuotes(key) + " is missing",
                    Mistake::incompletePair);
            place_ = start;
            return;
        }
        const bool isWhole = hasEnd && current() == U';';
        if (!isWhole) tellMissingEnd(key, start.line);
        // A value over several lines without its ";" is rather one that lacks its closing quote.
        if (isWhole || !spansLines_) keep(key, keyLine, std::move(*value));
        if (isWhole) return advance();
        resumeAfter(afterValue);
    }

    /// A text over several lines without its ";" most likely lacks its closing quote.
    void tellMissingEnd(const std::string& key, std::size_t line) {
        if (spansLines_) {
            problem(line, "this text has no closing quote", Mistake::textWithoutClosingQuote);
        } else {
            problem(line, "\";\" is missing after the value of " + inQuotes(key),
                    Mistake::missingSemicolon);
        }
    }

    /// Goes on where the parser is when that is on a later line than the broken pair's last text:
    /// most likely only that pair's end is missing.
    void resumeAfter(Place lastText) {
        if (spansLines_) return recoverFrom(resumption_);
        if (place_.line == lastText.line) recoverFrom(lastText);
    }

    /// Goes on after the next ";" that stands in no quotes, or on the next line.
    void recoverFrom(Place place) {
        const std::size_t distance = place_.index - std::min(place_.index, place.index);
        // Going back again and again in a hostile file must not take forever.
        if (distance <= rereadable_) {
            rereadable_ -= distance;
            place_ = place;
        }
        bool quoted = false;
        for (; current() != endOfText && current() != U'\n'; advance()) {
            if (current() == U'"') quoted = !quoted;
            if (current() == U';' && !quoted) break;
            if (current() == U'\\' && at(1) != U'\n') advance();
        }
        advance();
    }

    /// The beginning of the text, for a message.
    static std::string inQuotes(const std::string& text) {
        constexpr std::size_t longest = 60;
        if (text.size() <= longest) return '"' + text + '"';
        std::size_t end = longest;
        while ((static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
        return '"' + text.substr(0, end) + "...\"";
    }

    std::optional<std::string> readText(const char* what) {
        if (current() == U'"') return readQuoted();
        std::string text;
        // A comment may begin right behind an unquoted text.
        while (isUnquoted(current()) && !beginsComment()) {
            appendUtf8(text, current());
            advance();
        }
        if (!text.empty()) return text;
        problem(place_.line, std::string(what) + " is missing", Mistake::incompletePair);
        resumption_ = place_;
        return std::nullopt;
    }

    std::optional<std::string> readQuoted() {
        const Place start = place_;
        std::string text;
        advance();
        while (current() != U'"') {
            if (current() == endOfText) {
                problem(start.line, "this text has no closing quote",
                        Mistake::textWithoutClosingQuote);
                resumption_ = lineEndAfter(start);
                return std::nullopt;
            }
            if (current() == U'\\') {
                advance();
                appendUtf8(text, readEscape());
            } else {
                appendUtf8(text, current());
                advance();
            }
        }
        advance();
        if (place_.line != start.line && !spansLines_) {
            // When the pair turns out to be broken, this is most likely where a quote is missing:
            // the lines that the text ran into are read again.
            spansLines_ = true;
            resumption_ = lineEndAfter(start);
        }
        return text;
    }

    [[nodiscard]] Place lineEndAfter(Place place) const {
        const std::size_t end = text_.characters.find(U'\n', place.index);
        place.index = std::min(end, text_.characters.size());
        return place;
    }

    char32_t readEscape() {
        const char32_t letter = current();
        if (digit(letter, 8)) return checked(readDigits(8, 3));
        advance();
        switch (letter) {
            case U'n':
                return U'\n';
            case U't':
                return U'\t';
            case U'r':
                return U'\r';
            case U'a':
                return U'\a';
            case U'b':
                return U'\b';
            case U'f':
                return U'\f';
            case U'v':
                return U'\v';
            case U'U':
            case U'u':
                return readUnicode();
            case endOfText:
                return U'\\';
            case U'"':
            case U'\'':
            case U'\\':
            case U'\n':
                return letter;
            default:
                remarkUnknown(letter);
                return letter;
        }
    }

    void remarkUnknown(char32_t letter) {
        std::string escape = "\\";
        appendUtf8(escape, letter);
        remark(place_.line, "the escape " + escape + " is unknown", Mistake::unknownEscape);
    }

    char32_t readDigits(char32_t base, int count) {
        char32_t number = 0;
        for (int index = 0; index < count; ++index) {
            const auto value = digit(current(), base);
            if (!value) break;
            number = number * base + *value;
            advance();
        }
        return number;
    }

    char32_t readUnicode() {
        const char32_t unit = readDigits(16, 4);
        const bool pairFollows = current() == U'\\' && (at(1) == U'U' || at(1) == U'u');
        if (!isLeadingSurrogate(unit) || !pairFollows) return checked(unit);
        const Place before = place_;
        advance();
        advance();
        const char32_t next = readDigits(16, 4);
        if (isTrailingSurrogate(next)) return fromSurrogates(unit, next);
        place_ = before;
        return checked(unit);
    }

    char32_t checked(char32_t character) {
        if (character != 0 && !isLeadingSurrogate(character) && !isTrailingSurrogate(character))
            return character;
        problem(place_.line, "an escape that gives no character was replaced",
                Mistake::escapeWithoutCharacter);
        return replacementCharacter;
    }

    StringsTableText text_;
    StringsTable table_;
    Place place_;
    Place resumption_;         ///< where to look for the next pair when this one is broken
    std::size_t rereadable_;   ///< how many characters may still be read a second time
    bool spansLines_ = false;  ///< a text of this pair runs over a line's end
};

}  // namespace

StringsTable parseStringsTable(std::string_view bytes) {
    return Parser(bytes).parse();
}

}  // namespace installer
