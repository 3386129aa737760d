#include "tools/mkinstaller/lint/CheckLeftovers.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "tools/mkinstaller/sources/Folders.h"
#include "tools/mkinstaller/sources/SampleNames.h"

namespace installer {

namespace {

class LeftoverCheck {
  public:
    explicit LeftoverCheck(const LintContext& context) : context_(context) {
        const SampleNames sample = SampleNames::of(context.kit);
        // Whoever is called like the sample means it.
        const std::string own = lowerCased(context.product.name("company_name") + " " +
                                           context.product.name("product_name"));
        for (const std::string& name : {sample.company, split(sample.product, ' ').front()}) {
            if (!name.empty() && !contains(own, lowerCased(name))) words_.push_back(name);
        }
    }

    void check() {
        if (words_.empty()) return;
        checkFile(context_.product.information);
        for (const std::string& language : context_.product.languages()) {
            const std::string folder = context_.product.languageFolder(language);
            for (const std::string& name : sortedNames(folder)) {
                if (isText(name)) checkFile(joinPath(folder, name));
            }
        }
        checkNames(context_.product.payload());
        checkNames(context_.product.sharedSupport);
    }

  private:
    static bool isText(const std::string& name) {
        const std::string suffix = suffixOf(name);
        return suffix == "strings" || suffix == "rtf" || suffix == "txt" || suffix == "ui";
    }

    [[nodiscard]] std::optional<std::string> wordIn(std::string_view text) const {
        const std::string lower = lowerCased(text);
        for (const std::string& word : words_) {
            if (contains(lower, lowerCased(word))) return word;
        }
        return std::nullopt;
    }

    void checkFile(const std::string& file) {
        const auto text = contentsOf(file);
        if (!text) return;
        std::size_t line = 1;
        for (const std::string& content : split(*text, '\n')) {
            if (const auto word = wordIn(content)) tell(file, line, *word);
            ++line;
        }
    }

    void checkNames(const std::string& folder) {
        for (const std::string& name : sortedNames(folder)) {
            const std::string path = joinPath(folder, name);
            if (const auto word = wordIn(name)) tell(path, 1, *word);
            if (entryType(path) == EntryType::folder) checkNames(path);
        }
    }

    void tell(const std::string& file, std::size_t line, const std::string& word) {
        context_.findings.add("M009", {file, line}, "\"" + word + "\" is a name of the sample",
                              "write your own");
    }

    const LintContext& context_;
    std::vector<std::string> words_;
};

}  // namespace

void checkLeftovers(const LintContext& context) {
    LeftoverCheck(context).check();
}

}  // namespace installer
