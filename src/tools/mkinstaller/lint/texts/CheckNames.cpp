#include "tools/mkinstaller/lint/texts/CheckNames.h"

#include <string>
#include <string_view>

#include "foundation/text/Text.h"
#include "tools/mkinstaller/sources/Identifiers.h"
#include "tools/mkinstaller/sources/NameRules.h"

namespace installer {

namespace {

class NameCheck {
  public:
    NameCheck(const LintContext& context, const TextTables& tables, const std::string& language)
        : context_(context),
          table_(tables.table(language, "installer")),
          model_(tables.table(tables.languages().front(), "installer")),
          modelLanguage_(tables.languages().front()) {}

    void check() {
        if (!table_.read) return;
        for (const std::string key : {"company_name", "product_name"}) checkName(key);
        checkLengths();
        checkOwner();
        checkDomain();
    }

  private:
    void tell(std::string_view code, const std::string& key, std::string problem,
              std::string repair) {
        context_.findings.add(code, {table_.file, table_.line(key)}, std::move(problem),
                              std::move(repair));
    }

    void checkName(const std::string& key) {
        const std::string* name = table_.text(key);
        if (name == nullptr || trimmed(*name).empty()) {
            tell("M030", key, "\"" + key + "\" is missing or empty", "write the name");
            return;
        }
        checkCharacters(key, *name);
        const std::string* model = model_.text(key);
        if (model != nullptr && *model != *name) {
            tell("M031", key,
                 "\"" + key + "\" is \"" + *name + "\" here and \"" + *model + "\" in " +
                     modelLanguage_ + ", so each language would install into other folders",
                 "write the same name in each language");
        }
    }

    void checkCharacters(const std::string& key, const std::string& name) {
        if (contains(name, "/")) {
            tell("M032", key, "\"" + key + "\" contains \"/\", which begins another folder",
                 "leave it out");
        }
        if (hasControlCharacters(name)) {
            tell("M033", key,
                 "\"" + key + "\" contains a line end, a tab or another control character",
                 "leave it out");
        }
        if (name == "." || name == "..") {
            tell("M034", key, "\"" + key + "\" is \"" + name + "\", which names another folder",
                 "write the name itself");
        } else if (name.starts_with('.') || trimmed(name) != name) {
            tell("M036", key,
                 "\"" + key +
                     "\" begins with a dot, or begins or ends with a blank: its folder "
                     "would be hidden or look misspelled",
                 "leave them out");
        }
    }

    void checkLengths() {
        const std::string* company = table_.text("company_name");
        const std::string* product = table_.text("product_name");
        if (company != nullptr && company->size() > longestFileName) {
            tellLength("company_name", company->size(), longestFileName);
        } else if (company != nullptr && product != nullptr) {
            const std::size_t most = longestProductName(*company);
            if (product->size() > most) tellLength("product_name", product->size(), most);
        }
    }

    void tellLength(const std::string& key, std::size_t size, std::size_t most) {
        tell("M035", key,
             "\"" + key + "\" has " + std::to_string(size) + " bytes; " + std::to_string(most) +
                 " fit, since names of files are made of it",
             "shorten it");
    }

    void checkOwner() {
        const std::string* company = table_.text("company_name");
        if (company == nullptr || !isFolderOfKnownMaker(*company)) return;
        tell("M038", "company_name",
             "the folder \"" + *company +
                 "\" in Application Support is another maker's: its "
                 "folders would be replaced as a whole",
             "write your own company's name");
    }

    void checkDomain() {
        const std::string* domain = table_.text("app_plist");
        if (domain == nullptr || trimmed(*domain).empty()) return;
        if (!isReverseDomain(*domain)) {
            tell("M037", "app_plist", "\"app_plist\" is no settings domain: \"" + *domain + "\"",
                 "write one such as com.example.product");
        }
    }

    const LintContext& context_;
    const TextTable& table_;
    const TextTable& model_;
    const std::string& modelLanguage_;
};

}  // namespace

void checkNames(const LintContext& context, const TextTables& tables) {
    for (const std::string& language : tables.languages()) {
        NameCheck(context, tables, language).check();
    }
}

}  // namespace installer
