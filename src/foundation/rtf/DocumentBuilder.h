#pragma once

#include <string>
#include <utility>
#include <vector>

#include "foundation/rtf/ColorTable.h"
#include "foundation/rtf/Fields.h"
#include "foundation/rtf/FontTable.h"
#include "foundation/rtf/TextFormat.h"
#include "foundation/text/StyledText.h"

namespace installer::rtf {

/// What the numbers in a format stand for.
struct DocumentTables {
    FontTable fonts;
    ColorTable colors;
    Fields fields;
};

/// Gathers characters into runs of one style, and runs into paragraphs.
class DocumentBuilder {
  public:
    /// The tables, which must outlive the builder, may still grow.
    explicit DocumentBuilder(const DocumentTables& tables) : tables_(tables) {}

    void add(char32_t character, const CharacterFormat& format);
    void endParagraph(const ParagraphFormat& format);
    [[nodiscard]] bool hasOpenParagraph() const;

    /// The whole text; nothing may be added afterwards. A paragraph must not be open.
    [[nodiscard]] StyledText take() { return std::move(document_); }

  private:
    void endRun();
    [[nodiscard]] TextStyle styleOf(const CharacterFormat& format) const;

    const DocumentTables& tables_;
    StyledText document_;
    std::vector<TextRun> runs_;  ///< of the open paragraph
    std::string text_;           ///< what has this format and is in no run yet
    CharacterFormat format_;
};

}  // namespace installer::rtf
