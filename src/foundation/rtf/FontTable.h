#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace installer::rtf {

/// The fonts of a document by number, filled in the order in which a document lists them.
class FontTable {
  public:
    struct Font {
        std::string family;  ///< empty for the window's own font
        std::optional<int> codePage;
    };

    /// Begins the entry of a font and ends the one before. A second entry with the same number
    /// replaces the first.
    void begin(std::int32_t number);
    void setCodePage(std::optional<int> codePage);
    /// Text outside an entry is ignored.
    void addToName(char32_t character);
    void end();

    /// The code page of the entry's name; nullopt for the document's own.
    [[nodiscard]] std::optional<int> codePageOfEntry() const { return entry_.codePage; }

    /// The font, or null if the document has no font with that number.
    [[nodiscard]] const Font* find(std::int32_t number) const;

  private:
    std::map<std::int32_t, Font> fonts_;
    std::optional<std::int32_t> number_;
    Font entry_;
};

/// The family of a font, from the name that editors write: "Helvetica" for "Helvetica-BoldOblique",
/// "Calibri" for "Calibri CE". Empty for a system's own font such as ".SFNSText", and for names
/// longer than 128 bytes.
[[nodiscard]] std::string fontFamily(const std::string& name);

}  // namespace installer::rtf
