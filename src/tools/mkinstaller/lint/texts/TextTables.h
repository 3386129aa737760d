#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "linux/bundle/StringsTable.h"
#include "tools/mkinstaller/sources/Kit.h"
#include "tools/mkinstaller/sources/Product.h"

namespace installer {

/// One table of one language.
struct TextTable {
    std::string file;                  ///< its path, whether it is there or not
    std::optional<StringsTable> read;  ///< none when it is missing or cannot be read
    std::size_t lastLine = 1;

    [[nodiscard]] const std::string* text(const std::string& key) const;
    /// Where the key stands; the table's last line, where it would be added, without it.
    [[nodiscard]] std::size_t line(const std::string& key) const;
};

/// The tables of a product in all of its languages, and the kit's own ones, which say what the
/// installer asks for: its tests compare them with every look-up in the sources.
class TextTables {
  public:
    TextTables(const Product& product, const Kit& kit);

    /// Languages in the order in which they are compared: English first.
    [[nodiscard]] const std::vector<std::string>& languages() const { return languages_; }
    /// The names of the tables, such as "Localizable".
    [[nodiscard]] static const std::vector<std::string>& names();

    [[nodiscard]] const TextTable& table(const std::string& language,
                                         const std::string& name) const;
    /// The kit's text; null when the kit lacks the language or the key.
    [[nodiscard]] const std::string* kitText(const std::string& language, const std::string& name,
                                             const std::string& key) const;
    /// The kit's English table: all keys that there are.
    [[nodiscard]] const std::map<std::string, std::string>& wanted(const std::string& name) const;

  private:
    using Tables = std::map<std::string, TextTable>;  // by "LANGUAGE/NAME"

    std::vector<std::string> languages_;
    Tables tables_;
    Tables kitTables_;
};

}  // namespace installer
