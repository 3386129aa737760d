#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "foundation/rtf/DocumentBuilder.h"
#include "foundation/rtf/TextDecoder.h"
#include "foundation/rtf/TextFormat.h"
#include "foundation/rtf/Tokenizer.h"
#include "foundation/text/StyledText.h"

namespace installer::rtf {

/// Interprets a document's tokens, one after the other. It keeps open groups on a stack of its own,
/// so deep nesting cannot overflow the program's stack.
class Interpreter {
  public:
    static constexpr std::size_t deepestNesting = 10'000;

    Interpreter();
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    void obey(const Token& token);

    /// How many groups are open.
    [[nodiscard]] std::size_t depth() const { return groups_.size(); }

    /// The document's text. Call it after the last token.
    [[nodiscard]] StyledText take();

  private:
    /// The state that the end of a group restores.
    struct Group {
        Destination destination = Destination::text;
        Destination destinationOfAlternatives = Destination::text;
        std::int32_t fallbackLength = 1;
        std::int32_t field = -1;  ///< the one that the group belongs to
        CharacterFormat characters;
        ParagraphFormat paragraph;
    };

    void beginGroup();
    void endGroup();
    void endFallback() { fallbackLeft_ = 0; }
    [[nodiscard]] bool takeAsFallback();

    void obeyText(std::string_view text);
    void obeyUpperBytes(std::string_view bytes);
    void obeyByte(unsigned char byte);
    void obeySymbol(char symbol);
    void obeyWord(const Token& token, bool isOptional);
    [[nodiscard]] bool isSkipping() const;
    void obey(char32_t character, std::optional<std::int32_t> number);
    void obey(Destination destination, std::optional<std::int32_t> number);
    void obey(CharacterProperty property, std::optional<std::int32_t> number);
    void obey(ParagraphProperty property, std::optional<std::int32_t> number);
    void obey(Command command, std::optional<std::int32_t> number);
    void obeyUnicode(std::optional<std::int32_t> number);
    void obeyTableWord(Command command, std::optional<std::int32_t> number);
    void obeyDocumentWord(Command command, std::int32_t number);

    void receive(char32_t character);
    void receiveText(char32_t character);
    void endParagraph();
    [[nodiscard]] int codePage() const;

    DocumentTables tables_;
    DocumentBuilder builder_{tables_};
    TextDecoder decoder_;
    Group group_;                ///< the innermost one
    std::vector<Group> groups_;  ///< the ones around it
    ParagraphFormat formatOfText_;
    std::int32_t fallbackLeft_ = 0;
    std::int32_t defaultFont_ = -1;
    int codePage_ = westernCodePage;
    bool isNextOptional_ = false;  ///< the group is skipped if its next word is unknown
};

}  // namespace installer::rtf
