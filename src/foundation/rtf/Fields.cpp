#include "foundation/rtf/Fields.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "foundation/text/Text.h"
#include "foundation/values/Utf8.h"

namespace installer::rtf {

namespace {

/// Every run of characters keeps its link, so a long one would cost its length each time.
constexpr std::size_t longestLink = 2048;

struct Word {
    std::string text;
    bool isSwitch = false;  ///< such as \l; the text is its letter
};

/// Cuts an instruction into words, texts in quotation marks and switches.
class InstructionReader {
  public:
    explicit InstructionReader(std::string_view instruction) : rest_(instruction) {}

    std::optional<Word> next() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks), rest_.size()));
        if (rest_.empty()) return std::nullopt;
        if (rest_.front() == '"') return quoted();
        if (rest_.front() == '\\') {
            rest_.remove_prefix(1);
            return Word{plain(), true};
        }
        return Word{plain(), false};
    }

  private:
    static constexpr const char* blanks = " \t";

    std::string plain() {
        const std::size_t length = std::min(rest_.find_first_of(blanks), rest_.size());
        std::string text(rest_.substr(0, length));
        rest_.remove_prefix(length);
        return text;
    }

    /// A backslash keeps the meaning of the character after it from counting.
    Word quoted() {
        Word word;
        std::size_t place = 1;
        for (; place < rest_.size() && rest_[place] != '"'; ++place) {
            if (rest_[place] == '\\' && place + 1 < rest_.size()) ++place;
            word.text += rest_[place];
        }
        rest_.remove_prefix(std::min(place + 1, rest_.size()));
        return word;
    }

    std::string_view rest_;
};

}  // namespace

std::int32_t Fields::begin(std::int32_t outer) {
    fields_.push_back({.instruction = {}, .link = link(outer)});
    return static_cast<std::int32_t>(fields_.size() - 1);
}

void Fields::addToInstruction(std::int32_t field, char32_t character) {
    if (field < 0) return;
    Field& changed = fields_[static_cast<std::size_t>(field)];
    if (!changed.isComplete) appendUtf8(changed.instruction, character);
}

void Fields::endInstruction(std::int32_t field) {
    if (field < 0) return;
    Field& ended = fields_[static_cast<std::size_t>(field)];
    if (ended.isComplete) return;
    ended.isComplete = true;
    std::string own = linkOfInstruction(ended.instruction);
    if (!own.empty()) ended.link = std::move(own);
}

std::string Fields::link(std::int32_t field) const {
    return field < 0 ? std::string() : fields_[static_cast<std::size_t>(field)].link;
}

std::string linkOfInstruction(std::string_view instruction) {
    InstructionReader reader(instruction);
    const auto name = reader.next();
    if (!name || !equalIgnoringCase(name->text, "HYPERLINK")) return "";
    std::string address;
    std::string place;
    std::string currentSwitch;
    while (const auto word = reader.next()) {
        if (word->isSwitch) {
            currentSwitch = word->text;
            continue;
        }
        if (currentSwitch == "l") place = word->text;
        // These have no argument, so what follows them is the address.
        const bool isAddress =
            currentSwitch.empty() || currentSwitch == "n" || currentSwitch == "m";
        if (isAddress && address.empty()) address = word->text;
        currentSwitch.clear();
    }
    if (address.empty()) return "";
    if (!place.empty()) address += "#" + place;
    return address.size() <= longestLink ? address : "";
}

}  // namespace installer::rtf
