#pragma once

#include <string>
#include <vector>

#include "foundation/rtf/ColorTable.h"
#include "foundation/rtf/Fields.h"
#include "foundation/rtf/FontTable.h"
#include "foundation/rtf/TextFormat.h"
#include "foundation/text/ShownLength.h"
#include "foundation/text/StyledText.h"

namespace installer::rtf {

/// The tables that the numbers in a format refer to.
struct DocumentTables {
    FontTable fonts;
    ColorTable colors;
    Fields fields;
};

/// Collects characters into runs of one style, and runs into paragraphs. Takes no more than a
/// window shows of one text.
class DocumentBuilder {
  public:
    /// The tables outlive the builder. They may still grow.
    explicit DocumentBuilder(const DocumentTables& tables) : tables_(tables) {}

    void add(char32_t character, const CharacterFormat& format);
    void endParagraph(const ParagraphFormat& format);
    [[nodiscard]] bool hasOpenParagraph() const;

    /// The text, cut if it was too long. End the open paragraph first; add nothing afterwards.
    [[nodiscard]] StyledText take();

  private:
    void endRun();
    [[nodiscard]] TextStyle styleOf(const CharacterFormat& format) const;

    const DocumentTables& tables_;
    StyledText document_;
    ShownLengthCount length_;
    std::vector<TextRun> runs_;  ///< of the open paragraph
    std::string text_;           ///< text in `format_` that is not in a run yet
    CharacterFormat format_;
};

}  // namespace installer::rtf
