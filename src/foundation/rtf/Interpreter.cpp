#include "foundation/rtf/Interpreter.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "foundation/values/Utf8.h"

namespace installer::rtf {

namespace {

bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character <= 0x9F);
}

bool isAscii(char character) {
    return static_cast<unsigned char>(character) < 0x80;
}

/// The bytes from the place on that are no ASCII.
std::string_view upperBytes(std::string_view text, std::size_t place) {
    std::size_t end = place;
    while (end < text.size() && !isAscii(text[end])) ++end;
    return text.substr(place, end - place);
}

}  // namespace

Interpreter::Interpreter() : decoder_([this](char32_t character) { receive(character); }) {}

void Interpreter::obey(const Token& token) {
    if (token.kind == Token::Kind::text) return obeyText(token.text);
    const bool isOptional = std::exchange(isNextOptional_, false);
    switch (token.kind) {
        case Token::Kind::groupStart:
            beginGroup();
            break;
        case Token::Kind::groupEnd:
            endGroup();
            break;
        case Token::Kind::controlWord:
            obeyWord(token, isOptional);
            break;
        case Token::Kind::controlSymbol:
            obeySymbol(token.text.front());
            break;
        case Token::Kind::hexByte:
            if (!isSkipping() && !takeAsFallback()) obeyByte(token.byte);
            break;
        case Token::Kind::text:
        case Token::Kind::end:
            break;
    }
}

StyledText Interpreter::take() {
    if (builder_.hasOpenParagraph()) builder_.endParagraph(formatOfText_);
    return builder_.take();
}

void Interpreter::beginGroup() {
    decoder_.finish();
    endFallback();
    groups_.push_back(group_);
}

void Interpreter::endGroup() {
    decoder_.finish();
    endFallback();
    const Destination ended = group_.destination;
    group_ = groups_.back();
    groups_.pop_back();
    const bool endsFontTable =
        ended == Destination::fontTable && group_.destination != Destination::fontTable;
    if (endsFontTable) tables_.fonts.end();
}

/// Counts the fallback for readers without Unicode. Only characters count: some editors leave the
/// fallback out, and then the text after the escape would be lost.
bool Interpreter::takeAsFallback() {
    if (fallbackLeft_ == 0) return false;
    --fallbackLeft_;
    return true;
}

bool Interpreter::isSkipping() const {
    return group_.destination == Destination::skipped ||
           group_.destination == Destination::alternatives;
}

void Interpreter::obeyText(std::string_view text) {
    if (isSkipping()) return;
    for (std::size_t place = 0; place < text.size();) {
        const char character = text[place];
        if (character == '\r' || character == '\n' || character == '\0') {
            ++place;
        } else if (takeAsFallback()) {
            place += utf8CharacterAt(text, place).length;
        } else if (isAscii(character) || decoder_.awaitsByte()) {
            obeyByte(static_cast<unsigned char>(character));
            ++place;
        } else {
            const std::string_view upper = upperBytes(text, place);
            obeyUpperBytes(upper);
            place += upper.size();
        }
    }
}

/// RTF should have no bytes beyond ASCII. Some editors write them as UTF-8, others in the code
/// page. A word in a code page is hardly ever valid UTF-8 by chance.
void Interpreter::obeyUpperBytes(std::string_view bytes) {
    if (!isValidUtf8(bytes)) {
        for (const char byte : bytes) obeyByte(static_cast<unsigned char>(byte));
        return;
    }
    for (std::size_t place = 0; place < bytes.size();) {
        const Utf8Character next = utf8CharacterAt(bytes, place);
        decoder_.character(next.codePoint.value_or(replacementCharacter));
        place += next.length;
    }
}

void Interpreter::obeyByte(unsigned char byte) {
    const bool isWhole = byte < 0x80 && !decoder_.awaitsByte();
    if (isWhole) return decoder_.character(byte);
    decoder_.byte(byte, codePage());
}

void Interpreter::obeySymbol(char symbol) {
    if (symbol == '*') {
        isNextOptional_ = true;
    } else if (symbol == '\n' || symbol == '\r') {
        endFallback();
        endParagraph();
    } else if (!isSkipping() && !takeAsFallback()) {
        const auto character = characterOfSymbol(symbol);
        if (!character) return;
        // A backslash or brace can also be the second half of a double-byte character.
        if (*character < 0x80) return obeyByte(static_cast<unsigned char>(*character));
        decoder_.character(*character);
    }
}

void Interpreter::obeyWord(const Token& token, bool isOptional) {
    const auto meaning = meaningOf(token.text);
    if (!meaning && isOptional) group_.destination = Destination::skipped;
    if (group_.destination == Destination::alternatives &&
        meaning == Meaning(Command::unicodeAlternative)) {
        group_.destination = group_.destinationOfAlternatives;
    }
    if (isSkipping()) return;
    if (!meaning || !std::holds_alternative<char32_t>(*meaning)) endFallback();
    if (!meaning) return;
    std::visit([&](auto known) { obey(known, token.number); }, *meaning);
}

void Interpreter::obey(char32_t character, std::optional<std::int32_t>) {
    if (!takeAsFallback()) decoder_.character(character);
}

void Interpreter::obey(Destination destination, std::optional<std::int32_t>) {
    decoder_.finish();
    if (destination == Destination::alternatives) {
        group_.destinationOfAlternatives = group_.destination;
    }
    group_.destination = destination;
}

void Interpreter::obey(CharacterProperty property, std::optional<std::int32_t> number) {
    if (group_.destination != Destination::fontTable) {
        apply(property, number, defaultFont_, group_.characters);
    } else if (property == CharacterProperty::font) {
        decoder_.finish();
        tables_.fonts.begin(number.value_or(0));
    }
}

void Interpreter::obey(ParagraphProperty property, std::optional<std::int32_t> number) {
    apply(property, number, group_.paragraph);
}

void Interpreter::obey(Command command, std::optional<std::int32_t> number) {
    switch (command) {
        case Command::endParagraph:
            endParagraph();
            break;
        case Command::endPage:
            decoder_.finish();
            if (builder_.hasOpenParagraph()) endParagraph();
            break;
        case Command::unicode:
            obeyUnicode(number);
            break;
        case Command::fallbackLength:
            group_.fallbackLength = std::max(number.value_or(1), 0);
            break;
        case Command::field:
            group_.field = tables_.fields.begin(group_.characters.field);
            break;
        case Command::fieldResult:
            tables_.fields.endInstruction(group_.field);
            if (group_.field >= 0) group_.characters.field = group_.field;
            break;
        case Command::unicodeAlternative:
            break;
        case Command::fontCharset:
        case Command::fontCodePage:
        case Command::red:
        case Command::green:
        case Command::blue:
            obeyTableWord(command, number);
            break;
        case Command::ansi:
        case Command::mac:
        case Command::pc:
        case Command::pca:
        case Command::codePage:
        case Command::defaultFont:
            obeyDocumentWord(command, number.value_or(0));
            break;
    }
}

void Interpreter::obeyUnicode(std::optional<std::int32_t> number) {
    if (!number) return;
    decoder_.codeUnit(*number, codePage());
    fallbackLeft_ = group_.fallbackLength;
}

void Interpreter::obeyTableWord(Command command, std::optional<std::int32_t> number) {
    if (group_.destination == Destination::colorTable) {
        tables_.colors.setPart(command, number);
    } else if (group_.destination == Destination::fontTable) {
        const int value = number.value_or(0);
        if (command == Command::fontCharset) {
            tables_.fonts.setCodePage(codePageOfCharacterSet(value));
        } else if (command == Command::fontCodePage && isKnownCodePage(value)) {
            tables_.fonts.setCodePage(value);
        }
    }
}

void Interpreter::obeyDocumentWord(Command command, std::int32_t number) {
    switch (command) {
        case Command::mac:
            codePage_ = 10000;
            break;
        case Command::pc:
            codePage_ = 437;
            break;
        case Command::pca:
            codePage_ = 850;
            break;
        case Command::codePage:
            codePage_ = isKnownCodePage(number) ? number : westernCodePage;
            break;
        case Command::defaultFont:
            defaultFont_ = number;
            group_.characters.font = number;
            break;
        default:
            codePage_ = westernCodePage;
            break;
    }
}

void Interpreter::receive(char32_t character) {
    if (isControl(character) && character != U'\t') return;
    switch (group_.destination) {
        case Destination::text:
            receiveText(character);
            break;
        case Destination::fontTable:
            if (character == U';') {
                tables_.fonts.end();
            } else {
                tables_.fonts.addToName(character);
            }
            break;
        case Destination::colorTable:
            if (character == U';') tables_.colors.endEntry();
            break;
        case Destination::fieldInstruction:
            tables_.fields.addToInstruction(group_.field, character);
            break;
        case Destination::skipped:
        case Destination::alternatives:
            break;
    }
}

void Interpreter::receiveText(char32_t character) {
    if (group_.characters.hidden) return;
    if (character == paragraphSeparator) return endParagraph();
    builder_.add(character == lineSeparator ? U'\n' : character, group_.characters);
    formatOfText_ = group_.paragraph;
}

void Interpreter::endParagraph() {
    decoder_.finish();
    if (group_.destination == Destination::text) builder_.endParagraph(group_.paragraph);
}

/// The code page of the current text.
int Interpreter::codePage() const {
    if (group_.destination == Destination::fontTable) {
        return tables_.fonts.codePageOfEntry().value_or(codePage_);
    }
    const FontTable::Font* const font = tables_.fonts.find(group_.characters.font);
    return font == nullptr ? codePage_ : font->codePage.value_or(codePage_);
}

}  // namespace installer::rtf
