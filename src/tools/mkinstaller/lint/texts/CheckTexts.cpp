#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/text/Text.h"
#include "tools/mkinstaller/lint/texts/CheckTables.h"
#include "tools/mkinstaller/lint/texts/Placeholders.h"

namespace installer {

namespace {

constexpr std::string_view fullWidthColon = "\uFF1A";

bool isAddress(std::string_view text) {
    return text.starts_with("https://") || text.starts_with("http://");
}

/// An address that a browser takes: a host with a dot, and no blanks.
bool canBeOpened(std::string_view text) {
    if (!isAddress(text)) return false;
    const std::string_view host = text.substr(text.find("//") + 2);
    const std::string_view name = host.substr(0, host.find('/'));
    const bool hasBlank = withoutWhiteSpace(text).size() != text.size();
    return !hasBlank && name.find('.') != std::string_view::npos && !name.starts_with('.') &&
           !name.ends_with('.');
}

/// Words of letters, placeholders left out.
std::size_t wordsIn(const std::string& text) {
    const auto pieces = split(text, ' ');
    return static_cast<std::size_t>(std::ranges::count_if(pieces, [](const std::string& piece) {
        return !trimmed(piece).empty() && !contains(piece, "%");
    }));
}

/// The texts of one table, each compared with the kit's and with the first language's.
class TextCheck {
  public:
    TextCheck(const LintContext& context, const TextTables& tables, std::string language,
              std::string name)
        : context_(context),
          tables_(tables),
          language_(std::move(language)),
          name_(std::move(name)),
          table_(tables.table(language_, name_)),
          model_(tables.table(tables.languages().front(), name_)) {}

    void check() {
        if (!table_.read) return;
        for (const auto& [key, text] : table_.read->entries) {
            if (trimmed(text).empty()) {
                tellEmpty(key);
                continue;
            }
            if (name_ == "installer") continue;
            checkPlaceholders(key, text);
            checkTranslation(key, text);
            checkAgainstKit(key, text);
        }
    }

  private:
    void tell(std::string_view code, const std::string& key, std::string problem,
              std::string repair) {
        context_.findings.add(code, {table_.file, table_.line(key)}, std::move(problem),
                              std::move(repair));
    }

    void tellEmpty(const std::string& key) {
        if (key == "company_name" || key == "product_name") return;  // told by the check of names
        tell("M024", key, "the text of \"" + key + "\" is empty", "write the text");
    }

    void checkPlaceholders(const std::string& key, const std::string& text) {
        const auto used = placeholdersOf(text);
        if (!used) {
            tell("M022", key, "\"" + key + "\" has a percent sign that fills in nothing",
                 "write %@ or %1$@ for a name, %% for a percent sign");
            return;
        }
        const std::string* model = model_.text(key);
        const auto wanted = model == nullptr ? std::nullopt : placeholdersOf(*model);
        if (wanted && *wanted != *used) {
            tell("M021", key,
                 "\"" + key + "\" takes other placeholders than in " + tables_.languages().front(),
                 "use the same ones; write %1$@ and %2$@ to change their order");
        } else {
            tellBeyond(key, *used);
        }
    }

    /// The installer fills in as many names as the kit's own text has places for.
    void tellBeyond(const std::string& key, const std::vector<int>& used) {
        const std::string* kitText = tables_.kitText("en", name_, key);
        const auto filled = kitText == nullptr ? std::nullopt : placeholdersOf(*kitText);
        if (!filled || used.empty()) return;
        const int most = filled->empty() ? 0 : filled->back();
        if (used.back() <= most) return;
        tell("M022", key,
             "\"" + key + "\" has more placeholders than the " + std::to_string(most) +
                 " that the installer fills in",
             "remove those that stay empty");
    }

    /// A text of a language that the kit speaks counts when the kit translates it; else only a
    /// text of several words does, since names and words like "OK" are the same in many languages.
    void checkTranslation(const std::string& key, const std::string& text) {
        const std::string* model = model_.text(key);
        if (&model_ == &table_ || language_.starts_with("en") || model == nullptr) return;
        if (*model != text || isAddress(text)) return;
        const std::string* kitText = tables_.kitText(language_, name_, key);
        const std::string* kitEnglish = tables_.kitText("en", name_, key);
        const bool isKnown = kitText != nullptr && kitEnglish != nullptr;
        if (isKnown ? *kitText == *kitEnglish : wordsIn(text) < 3) return;
        tell("M023", key,
             "\"" + key + "\" says the same in " + language_ + " as in " +
                 tables_.languages().front(),
             "translate it");
    }

    void checkAgainstKit(const std::string& key, const std::string& text) {
        const std::string* kitText = tables_.kitText("en", name_, key);
        if (kitText == nullptr) return;
        if (kitText->ends_with(' ') && !text.ends_with(' ') && !text.ends_with(fullWidthColon)) {
            tell("M025", key, "a name follows \"" + key + "\" without a blank between them",
                 "end the text with a blank");
        }
        if (isAddress(*kitText) && !canBeOpened(text)) {
            tell("M026", key, "\"" + key + "\" is no address: " + text,
                 "write a whole one, such as https://www.example.com/help");
        }
    }

    const LintContext& context_;
    const TextTables& tables_;
    std::string language_;
    std::string name_;
    const TextTable& table_;
    const TextTable& model_;
};

}  // namespace

void checkTexts(const LintContext& context, const TextTables& tables) {
    for (const std::string& language : tables.languages()) {
        for (const std::string& name : TextTables::names()) {
            TextCheck(context, tables, language, name).check();
        }
    }
}

}  // namespace installer
